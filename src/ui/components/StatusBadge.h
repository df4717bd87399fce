#pragma once

#include "sampling/NetworkStatus.h"
#include "ui/components/AccessibleWidgets.h"

#include <functional>

namespace tidewell {

class PulseDot;

/// A pill with the network's status in its colour and a pulsing dot. Its size depends on the text.
class StatusBadge final : public PaintedWidget {
  Q_OBJECT

public:
  /// `now` returns the time in seconds, for the pulse.
  explicit StatusBadge(std::function<double()> now, QWidget* parent = nullptr);

  /// Changes text and colours; the pulse continues.
  void setStatus(NetworkStatus status);
  [[nodiscard]] NetworkStatus status() const { return m_status; }
  [[nodiscard]] QString text() const;
  [[nodiscard]] PulseDot& dot() { return *m_dot; }

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  void showStatus();

  NetworkStatus m_status = NetworkStatus::excellent;
  PulseDot* m_dot; // a child
};

} // namespace tidewell
