#include "ui/components/Spinner.h"

#include "ui/components/Painting.h"
#include "ui/components/ViewTime.h"
#include "ui/tokens/TWColor.h"

#include <QPainter>
#include <QPen>

#include <cmath>
#include <utility>

namespace tidewell {
namespace {

constexpr int edge = 16;
constexpr int spokes = 8;
constexpr int periodMs = 100;
constexpr double stepSeconds = 0.1;
constexpr double innerRadius = 3.2;
constexpr double outerRadius = 6.4;
constexpr double spokeWidth = 1.6;
constexpr double faintest = 0.2;

} // namespace

Spinner::Spinner(std::function<double()> now, QWidget* parent)
    : QWidget(parent), m_now(std::move(now)),
      m_ticker(new ShownTicker(*this, periodMs,
                               {[this] { m_beginning = m_now(); }, [this] { advance(); }})) {
  setFixedSize(edge, edge);
}

bool Spinner::isTicking() const { return m_ticker->isRunning(); }

void Spinner::advance() {
  const double steps = std::floor((m_now() - m_beginning) / stepSeconds + 0.5);
  const int spoke = static_cast<int>(std::fmod(std::max(steps, 0.0), spokes));
  if (spoke != m_spoke) {
    m_spoke = spoke;
    update();
  }
}

void Spinner::paintEvent(QPaintEvent* /*event*/) {
  SmoothPainter painter(this);
  painter.translate(edge / 2.0, edge / 2.0);
  painter.rotate(360.0 / spokes * m_spoke);
  // Starts at the bright spoke and fades backwards.
  for (int age = 0; age < spokes; ++age) {
    const double opacity = 1.0 - (1.0 - faintest) * age / (spokes - 1);
    painter.setPen(
        QPen(withOpacity(TWColor::text, opacity), spokeWidth, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(0.0, -innerRadius), QPointF(0.0, -outerRadius));
    painter.rotate(-360.0 / spokes);
  }
}

} // namespace tidewell
