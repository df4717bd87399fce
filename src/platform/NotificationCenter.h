#pragma once

#include <string>

namespace tidewell {

/// One notice to the user.
struct NotificationRequest {
  /// A later notice of the same identifier takes this one's place.
  std::string identifier;
  std::string title;
  std::string body;

  friend bool operator==(const NotificationRequest&, const NotificationRequest&) = default;
};

/// Shows notices, with the desktop's default sound. Never waits and never fails visibly. Main
/// thread.
class NotificationCenter {
public:
  NotificationCenter() = default;
  NotificationCenter(const NotificationCenter&) = delete;
  NotificationCenter& operator=(const NotificationCenter&) = delete;
  virtual ~NotificationCenter() = default;

  /// Asks for whatever the desktop wants asked before notices with sound may be shown.
  virtual void requestAuthorization() = 0;

  /// Shows a notice.
  virtual void add(NotificationRequest request) = 0;
};

} // namespace tidewell
