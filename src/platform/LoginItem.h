#pragma once

#include <optional>
#include <string>

namespace tidewell {

/// The program's own entry in what starts with the user's session.
class LoginItem {
public:
  LoginItem() = default;
  LoginItem(const LoginItem&) = delete;
  LoginItem& operator=(const LoginItem&) = delete;
  virtual ~LoginItem() = default;

  /// Makes the program start at login; a description of the error when that fails.
  [[nodiscard]] virtual std::optional<std::string> registerItem() = 0;

  /// Undoes `registerItem`; succeeds when there is nothing to undo.
  [[nodiscard]] virtual std::optional<std::string> unregisterItem() = 0;
};

} // namespace tidewell
