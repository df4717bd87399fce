#pragma once

#include "ui/components/AccessibleWidgets.h"

#include <QColor>

#include <array>

class QHBoxLayout;
class QVBoxLayout;

namespace tidewell {

class ValueRow;
struct ConnectionInfo;

/// A title above rows. Main thread.
class DiagnosticGroup : public SpokenGroup {
  Q_OBJECT

public:
  DiagnosticGroup(const QString& title, QWidget* parent);

  /// Adds a row at the end.
  [[nodiscard]] ValueRow* diagnosticRow(const char* label);
  /// Adds something else at the end.
  void add(QWidget* widget);
  /// Puts something at the right of the title.
  void addBesideTitle(QWidget* widget);

private:
  QVBoxLayout* m_column;
  QHBoxLayout* m_titleRow;
};

/// Whether there is a connection, and which. Main thread.
class ConnectionGroup final : public DiagnosticGroup {
  Q_OBJECT

public:
  explicit ConnectionGroup(QWidget* parent);

  void setConnected(bool isConnected);
  void setInfo(const ConnectionInfo& info);

private:
  // Children.
  ValueRow* m_status;
  std::array<ValueRow*, 6> m_details;
};

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
  ValueRow* m_latency;
  ValueRow* m_jitter;
  ValueRow* m_loss;
};

} // namespace tidewell
