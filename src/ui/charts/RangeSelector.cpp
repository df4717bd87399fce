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
// In percent. Darker grounds than that of the others would vanish in the window's.
constexpr int pressedLightness = 130;
constexpr int chosenPressedLightness = 85;
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

QColor RangeButton::ground() const {
  if (isChecked()) {
    const int hoverLightness = underMouse() ? chosenHoverLightness : 100;
    return TWColor::accentDim.lighter(isDown() ? chosenPressedLightness : hoverLightness);
  }
  if (isDown()) {
    return TWColor::surface3.lighter(pressedLightness);
  }
  return underMouse() ? TWColor::surface3 : TWColor::surface2;
}

void RangeButton::paintEvent(QPaintEvent* /*event*/) {
  SmoothPainter painter(this);
  fillRounded(painter, rect(), radius, ground());
  drawLine(painter, rect().adjusted(0, edgePadding, 0, 0), text(), textStyle(isChecked()));
  if (showsFocus()) {
    drawFocusRing(painter, rect(), radius);
  }
}

RangeSelector::RangeSelector(QWidget* parent)
    : SpokenGroup(QAccessible::Grouping, translatedText("Time range"), parent) {
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(spacing);
  for (const TimeRange range : allTimeRanges) {
    auto* const button =
        new RangeButton(translatedText(std::string(rawValue(range)).c_str()), this);
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
