#include "ui/detail/PerformanceGroup.h"

#include "ui/components/ShownText.h"
#include "ui/detail/DiagnosticRow.h"
#include "ui/tokens/TWColor.h"

namespace tidewell {

namespace {

constexpr PerformanceGroup::Thresholds latencyMs{50.0, 100.0};
constexpr PerformanceGroup::Thresholds jitterMs{5.0, 20.0};
constexpr PerformanceGroup::Thresholds lossPercent{1.0, 5.0};

} // namespace

PerformanceGroup::PerformanceGroup(QWidget* parent)
    : DiagnosticGroup(QStringLiteral("Performance"), parent), m_latency(diagnosticRow("Latency")),
      m_jitter(diagnosticRow("Jitter")), m_loss(diagnosticRow("Packet Loss")) {}

void PerformanceGroup::setLatency(double milliseconds) {
  m_latency->setValue(figureText(milliseconds, 1) + QStringLiteral(" ms"),
                      colorOf(milliseconds, latencyMs));
}

void PerformanceGroup::setJitter(double milliseconds) {
  m_jitter->setValue(figureText(milliseconds, 1) + QStringLiteral(" ms"),
                     colorOf(milliseconds, jitterMs));
}

void PerformanceGroup::setPacketLoss(double percent) {
  m_loss->setValue(figureText(percent, 1) + u'%', colorOf(percent, lossPercent));
}

const QColor& PerformanceGroup::colorOf(double value, Thresholds thresholds) {
  if (value < thresholds.yellow) {
    return TWColor::green();
  }
  return value < thresholds.red ? TWColor::yellow() : TWColor::red();
}

} // namespace tidewell
