#pragma once

#include "sampling/NetworkStatus.h"
#include "ui/components/AccessibleWidgets.h"

#include <functional>

namespace tidewell {

class PulseDot;

/// A pill that names the network's status in its colour, with a dot that pulses. Its size follows
/// the text. Main thread.
class StatusBadge final : public PaintedWidget {
  Q_OBJECT

public:
  /// `now` tells the pulse the time in seconds.
  explicit StatusBadge(std::function<double()> now, QWidget* parent = nullptr);

  /// Changes text and colours at once; the pulse goes on.
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
