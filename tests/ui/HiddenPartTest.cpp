#include "support/ImageComparison.h"
#include "support/Scene.h"

#include <gtest/gtest.h>

#include <QScrollBar>

#include <set>
#include <string>

namespace tidewell::test {
namespace {

/// The part of the window that shows the widget.
QRect shownPart(const QWidget& part, const QWidget& window) {
  const QRect inWindow =
      part.visibleRegion().boundingRect().translated(part.mapTo(&window, QPoint()));
  return inWindow.intersected(window.rect());
}

QImage pictureOf(QWidget& window, const QRect& area) {
  QImage image(area.size(), QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  window.render(&image, {}, area, QWidget::DrawChildren);
  return image;
}

/// Whether the picture changes when the part is hidden and everything else stays in its place.
bool canBeSeen(QWidget& part, QWidget& window) {
  const QRect area = shownPart(part, window);
  const QImage before = pictureOf(window, area);
  QSizePolicy policy = part.sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  part.setSizePolicy(policy);
  part.hide();
  const bool isSeen = pictureOf(window, area) != before;
  part.show();
  return isSeen;
}

std::string nameOf(const QWidget& part) {
  const std::string name = part.accessibleName().toStdString();
  return part.metaObject()->className() + part.objectName().toStdString() +
         (name.empty() ? "" : " \"" + name + '"');
}

/// A scroll bar without anything to scroll, or the toolkit's box around it.
bool isIdleBar(const QWidget& part) {
  const auto* const bar = part.objectName() == "qt_scrollarea_vcontainer"
                              ? part.findChild<QScrollBar*>()
                              : qobject_cast<const QScrollBar*>(&part);
  return bar != nullptr && !bar->isEnabled();
}

/// Less than half of it is in the window: the rest is scrolled away, perhaps with all it shows.
bool isScrolledAway(const QWidget& part, const QWidget& window) {
  const QRect shown = shownPart(part, window);
  return 2 * shown.width() * shown.height() < part.width() * part.height();
}

class HiddenPartTest : public testing::TestWithParam<Scene> {};

TEST_P(HiddenPartTest, ChangesThePicture) {
  const auto window = GetParam().make();
  int parts = 0;
  for (QWidget* part : window->findChildren<QWidget*>()) {
    if (part->isVisible() && !isScrolledAway(*part, *window) && !isIdleBar(*part)) {
      ++parts;
      EXPECT_TRUE(canBeSeen(*part, *window)) << nameOf(*part) << " is not in the picture";
    }
  }
  const std::set<std::string> paintedAsOne = {"icons", "states", "panel-backdrops"};
  EXPECT_NE(parts > 0, paintedAsOne.contains(GetParam().name));
}

INSTANTIATE_TEST_SUITE_P(Scenes, HiddenPartTest, testing::ValuesIn(allScenes()), sceneName);

} // namespace
} // namespace tidewell::test
