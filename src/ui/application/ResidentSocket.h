#pragma once

#include "windowRequests/WindowRequest.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace tidewell {

/// The socket to the resident, which is the standard input when the resident has started this
/// process. Main thread.
class ResidentSocket final : public QObject {
  Q_OBJECT

public:
  /// Whether the standard input is such a socket.
  [[nodiscard]] static bool isThere();

  /// Call when `isThere`.
  ResidentSocket();

  void report(const WindowReport& report) const;

Q_SIGNALS:
  /// Each request is reported as taken after this.
  void requested(const tidewell::WindowRequest& request);
  /// The resident is gone.
  void closed();

private:
  void read();

  QSocketNotifier m_readable;
};

} // namespace tidewell
