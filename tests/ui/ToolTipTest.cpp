#include "ui/components/ToolTip.h"
#include "ui/components/ValueRow.h"
#include "ui/tokens/TWColor.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>

#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

class ToolTipTest : public testing::Test {
protected:
  void SetUp() override {
    window.resize(320, 400);
    row.setGeometry(0, 360, 320, 29);
    window.show();
  }

  void point() {
    QHelpEvent event(QEvent::ToolTip, {310, 10}, row.mapToGlobal(QPoint(310, 10)));
    QApplication::sendEvent(&row, &event);
  }

  ToolTip* tip() {
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return window.findChild<ToolTip*>();
  }

  QWidget window;
  ValueRow row{"Network", {.padding = 6}, &window};
};

TEST_F(ToolTipTest, IsAPartOfTheWindowAndNoWindow) {
  row.setValue("a name of <b>many</b> words that does not fit " + QString(60, u'W'), TWColor::text);
  const auto windows = QApplication::topLevelWidgets().size();
  point();
  ASSERT_NE(tip(), nullptr);
  EXPECT_TRUE(tip()->isVisible());
  EXPECT_EQ(QApplication::topLevelWidgets().size(), windows);
  EXPECT_TRUE(window.rect().contains(tip()->geometry()));
  EXPECT_FALSE(tip()->geometry().contains(row.mapTo(&window, QPoint(310, 10))))
      << "the pointer would cover it";
  EXPECT_GT(tip()->lines().size(), 1);
  EXPECT_TRUE(tip()->lines().join(' ').startsWith("a name of <b>many</b> words"));
  EXPECT_EQ(tip()->accessibleName(), row.toolTip());
}

TEST_F(ToolTipTest, OfAnyLengthEndsInAnEllipsis) {
  row.setValue(QString(10'000, u'W'), TWColor::text);
  point();
  EXPECT_TRUE(window.rect().contains(tip()->geometry()));
  EXPECT_TRUE(tip()->lines().last().endsWith(u'…'));
}

TEST_F(ToolTipTest, IsSetInTheWindowsFontWhateverTheDesktopsIs) {
  row.setValue(QString(100, u'W'), TWColor::text);
  point();
  const QSize size = tip()->size();
  const QImage before = tip()->grab().toImage();
  window.setFont(QFont("JetBrains Mono", 30));
  point();
  EXPECT_EQ(tip()->size(), size);
  EXPECT_EQ(tip()->grab().toImage(), before);
}

TEST_F(ToolTipTest, FollowsTheValue) {
  row.setValue(QString(100, u'A'), TWColor::text);
  point();
  row.setValue(QString(100, u'B'), TWColor::text);
  EXPECT_EQ(tip()->lines().join(""), QString(100, u'B'));
  row.setValue("short", TWColor::text);
  EXPECT_EQ(tip(), nullptr);
  point();
  EXPECT_EQ(tip(), nullptr) << "nothing is cut";
}

TEST_F(ToolTipTest, EndsWithWhatTheUserDoesAndWithItsWidget) {
  const auto showAndSend = [this](QEvent&& event) {
    row.setValue(QString(100, u'A'), TWColor::text);
    point();
    EXPECT_NE(tip(), nullptr);
    QApplication::sendEvent(&row, &event);
    EXPECT_EQ(tip(), nullptr);
  };
  showAndSend(QEvent(QEvent::Leave));
  showAndSend(QKeyEvent(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier));
  showAndSend(QEvent(QEvent::WindowDeactivate));
  auto* const other = new ValueRow("Other", {.padding = 6}, &window);
  other->resize(100, 29);
  other->setValue(QString(100, u'A'), TWColor::text);
  other->show();
  ToolTip::show(*other, {5, 5});
  EXPECT_NE(tip(), nullptr);
  delete other;
  EXPECT_EQ(tip(), nullptr);
}

} // namespace
} // namespace tidewell::test
