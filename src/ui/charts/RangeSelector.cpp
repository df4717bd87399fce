#include "ui/charts/RangeSelector.h"

#include "ui/components/FittedText.h"
#include "ui/components/Painting.h"
#include "ui/components/ShownText.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QHBoxLayout>
#include <QPainter>

#include <cmath>

namespace tidewell {
namespace {

constexpr int sidePadding = 10;
constexpr int edgePadding = 4;
constexpr double radius = 4.0;
constexpr int pressedLightness = 85; // percent
constexpr int chosenHoverLightness = 115;

TextStyle textStyle(bool isChosen) {
  return {.font = TWFont::standard(11, QFont::Medium),
          .color = isChosen ? TWColor::accent : TWColor::textSecondary,
          .alignment = Qt::AlignHCenter};
}

constexpr int spacing = 4;

} // namespace

QSize RangeButton::sizeHint() const {
  const int textWidth = static_cast<int>(std::ceil(lineWidth(text(), textStyle(false))));
  return {textWidth + 2 * sidePadding, lineHeight(textStyle(false)) + 2 * edgePadding};
}

void RangeButton::paintEvent(QPaintEvent* /*event*/) {
  SmoothPainter painter(this);
  QColor ground = isChecked() ? TWColor::accentDim : TWColor::surface2;
  if (isDown()) {
    ground = ground.lighter(pressedLightness);
  } else if (underMouse()) {
    ground = isChecked() ? ground.lighter(chosenHoverLightness) : QColor(TWColor::surface3);
  }
  fillRounded(painter, rect(), radius, ground);
  drawLine(painter, rect().adjusted(0, edgePadding, 0, 0), text(), textStyle(isChecked()));
  if (showsFocus()) {
    drawFocusRing(painter, rect(), radius);
  }
}

RangeSelector::RangeSelector(QWidget* parent)
    : SpokenGroup(QAccessible::Grouping, QStringLiteral("Time range"), parent) {
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(spacing);
  for (const TimeRange range : allTimeRanges) {
    auto* const button = new RangeButton(shownText(rawValue(range)), this);
    button->setChecked(range == m_selection);
    connect(button, &QRadioButton::toggled, this, [this, range](bool isChosen) {
      if (isChosen) {
        m_selection = range;
      }
    });
    row->addWidget(button);
  }
}

} // namespace tidewell
