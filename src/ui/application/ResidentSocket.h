#pragma once

#include "windowRequests/WindowRequest.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace tidewell {

/// The socket to the resident: the standard input, if the resident started this process.
class ResidentSocket final : public QObject {
  Q_OBJECT

public:
  /// Whether the standard input is such a socket.
  [[nodiscard]] static bool isThere();

  /// Call only if `isThere`.
  ResidentSocket();

  void report(const WindowReport& report) const;

Q_SIGNALS:
  /// Emitted for each request, before it is reported as taken.
  void requested(const tidewell::WindowRequest& request);
  /// The resident has exited.
  void closed();

private:
  void read();

  QSocketNotifier m_readable;
};

} // namespace tidewell
