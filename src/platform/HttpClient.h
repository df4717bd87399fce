#pragma once

#include "base/Async.h"
#include "base/Interface.h"
#include "base/Scheduler.h"

#include <optional>
#include <string>

namespace tidewell {

/// Fetches small texts from the internet.
class HttpClient : public Interface {
public:
  /// The body of the reply to a GET, whatever its status; nullopt if none can come or none came
  /// within `wait` seconds. Later replies are dropped.
  [[nodiscard]] virtual Async<std::optional<std::string>> get(std::string url, Seconds wait) = 0;
};

} // namespace tidewell
