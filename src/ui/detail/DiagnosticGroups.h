#pragma once

#include "ui/components/AccessibleWidgets.h"

#include <QColor>

#include <array>

class QHBoxLayout;
class QVBoxLayout;

namespace tidewell {

class ValueRow;
struct ConnectionInfo;

/// A title with rows below it.
class DiagnosticGroup : public SpokenGroup {
  Q_OBJECT

public:
  DiagnosticGroup(const QString& title, QWidget* parent);

  /// Appends a row.
  [[nodiscard]] ValueRow* diagnosticRow(const char* label);
  /// Appends another widget.
  void add(QWidget* widget);
  /// Adds a widget at the right of the title.
  void addBesideTitle(QWidget* widget);

private:
  QVBoxLayout* m_column;
  QHBoxLayout* m_titleRow;
};

/// The state and the details of the connection.
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

/// Latency, jitter and packet loss, coloured by quality.
class PerformanceGroup final : public DiagnosticGroup {
  Q_OBJECT

public:
  /// The smallest values that are yellow and red.
  struct Thresholds {
    double yellow;
    double red;
  };

  explicit PerformanceGroup(QWidget* parent);

  void setLatency(double milliseconds);
  void setJitter(double milliseconds);
  void setPacketLoss(double percent);

  /// Green below the first threshold, yellow below the second, otherwise red, also for NaN.
  [[nodiscard]] static const QColor& colorOf(double value, Thresholds thresholds);

private:
  static void show(ValueRow& row, const QString& text, double value, Thresholds thresholds);

  // Children.
  ValueRow* m_latency;
  ValueRow* m_jitter;
  ValueRow* m_loss;
};

} // namespace tidewell
