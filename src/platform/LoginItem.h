#pragma once

#include "base/Interface.h"

#include <optional>
#include <string>

namespace tidewell {

/// The program's entry among what starts at login.
class LoginItem : public Interface {
public:
  /// Makes the program start at login; returns a description of the error on failure.
  [[nodiscard]] virtual std::optional<std::string> registerItem() = 0;

  /// Undoes `registerItem`; succeeds if there is nothing to undo.
  [[nodiscard]] virtual std::optional<std::string> unregisterItem() = 0;
};

} // namespace tidewell
