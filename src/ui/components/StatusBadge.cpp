#include "ui/components/StatusBadge.h"

#include "base/Translation.h"
#include "ui/components/FittedText.h"
#include "ui/components/Painting.h"
#include "ui/components/PulseAnimation.h"
#include "ui/components/ShownText.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QPainter>

#include <cmath>
#include <utility>

namespace tidewell {
namespace {

constexpr int sidePadding = 12;
constexpr int edgePadding = 4;
constexpr int spacing = 6;
constexpr int textLeft = sidePadding + PulseDot::edge + spacing;

struct Look {
  const char* text;
  const QColor& color;
  const QColor& ground;
};

Look lookOf(NetworkStatus status) {
  switch (status) {
  case NetworkStatus::good:
    return {translatable("Good"), TWColor::green, TWColor::greenDim};
  case NetworkStatus::degraded:
    return {translatable("High Latency"), TWColor::yellow, TWColor::yellowDim};
  case NetworkStatus::down:
    return {translatable("No Internet"), TWColor::red, TWColor::redDim};
  case NetworkStatus::excellent:
    break;
  }
  return {translatable("Excellent"), TWColor::green, TWColor::greenDim};
}

TextStyle textStyle(const QColor& color) { return {TWFont::standard(12, QFont::Medium), color}; }

} // namespace

StatusBadge::StatusBadge(std::function<double()> now, QWidget* parent)
    : PaintedWidget(QAccessible::StaticText, parent), m_dot(new PulseDot(std::move(now), this)) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  showStatus();
}

void StatusBadge::setStatus(NetworkStatus status) {
  if (status != m_status) {
    m_status = status;
    showStatus();
  }
}

QString StatusBadge::text() const { return translatedText(lookOf(m_status).text); }

void StatusBadge::showStatus() {
  const Look look = lookOf(m_status);
  const TextStyle style = textStyle(look.color);
  const int textWidth = static_cast<int>(std::ceil(lineWidth(text(), style)));
  setFixedSize(textLeft + textWidth + sidePadding, lineHeight(style) + 2 * edgePadding);
  m_dot->setColors(look.color, look.ground);
  m_dot->move(sidePadding, (height() - PulseDot::edge + 1) / 2);
  setSpoken(translatedText("Status %1").arg(text()));
  update();
}

void StatusBadge::paintEvent(QPaintEvent* /*event*/) {
  const Look look = lookOf(m_status);
  SmoothPainter painter(this);
  fillRounded(painter, rect(), height() / 2.0, look.ground);
  drawLine(painter, rect().adjusted(textLeft, edgePadding, -sidePadding, -edgePadding), text(),
           textStyle(look.color));
}

} // namespace tidewell
