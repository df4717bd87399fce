#pragma once

#include "ui/detail/DiagnosticGroup.h"

#include <QColor>

namespace tidewell {

/// Latency, jitter and loss, each in the colour of its quality. Main thread.
class PerformanceGroup final : public DiagnosticGroup {
  Q_OBJECT

public:
  /// From which values on a figure is no longer good, and no longer fair.
  struct Thresholds {
    double yellow;
    double red;
  };

  explicit PerformanceGroup(QWidget* parent);

  void setLatency(double milliseconds);
  void setJitter(double milliseconds);
  void setPacketLoss(double percent);

  /// Green below the first threshold, yellow below the second, red for all else, also for what is
  /// no number.
  [[nodiscard]] static const QColor& colorOf(double value, Thresholds thresholds);

private:
  // Children.
  DiagnosticRow* m_latency;
  DiagnosticRow* m_jitter;
  DiagnosticRow* m_loss;
};

} // namespace tidewell
