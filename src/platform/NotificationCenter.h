#pragma once

#include "base/Interface.h"

#include <string>

namespace tidewell {

/// How much a notice matters to the user.
enum class NotificationPriority {
  normal,
  low // it may be missed: it must not pile up, nor cover what the user does
};

/// One notice to the user.
struct NotificationRequest {
  /// A later notice with the same identifier replaces this one.
  std::string identifier;
  std::string title;
  std::string body;
  NotificationPriority priority = NotificationPriority::normal;

  friend bool operator==(const NotificationRequest&, const NotificationRequest&) = default;
};

/// Shows notices with the desktop's default sound, where the desktop wants sounds. Never waits and
/// never reports failure.
class NotificationCenter : public Interface {
public:
  /// Requests the desktop's permission for notices with sound, where it wants to be asked.
  virtual void requestAuthorization() = 0;

  /// Shows a notice.
  virtual void add(NotificationRequest request) = 0;
};

} // namespace tidewell
