#include "ui/charts/RangeSelector.h"

#include "ui/components/FittedText.h"
#include "ui/components/Painting.h"
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

TextStyle textStyle(bool isChosen) {
  static const QFont font = TWFont::standard(11, QFont::Medium);
  TextStyle style{font, isChosen ? TWColor::accent() : TWColor::textSecondary()};
  style.alignment = Qt::AlignHCenter;
  return style;
}

constexpr int spacing = 4;

} // namespace

QSize RangeButton::sizeHint() const {
  const int textWidth = static_cast<int>(std::ceil(lineWidth(text(), textStyle(false))));
  return {textWidth + 2 * sidePadding, lineHeight(textStyle(false)) + 2 * edgePadding};
}

void RangeButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(isChecked()    ? TWColor::accentDim()
                   : underMouse() ? TWColor::surface3()
                                  : TWColor::surface2());
  painter.drawRoundedRect(rect(), radius, radius);
  drawLine(painter, rect().adjusted(0, edgePadding, 0, 0), text(), textStyle(isChecked()));
  if (hasFocus()) {
    drawFocusRing(painter, rect(), radius);
  }
}

RangeSelector::RangeSelector(QWidget* parent)
    : SpokenGroup(QAccessible::Grouping, QStringLiteral("Time range"), parent) {
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(spacing);
  for (const TimeRange range : allTimeRanges) {
    const std::string_view text = rawValue(range);
    auto* const button = new RangeButton(
        QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())), this);
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
