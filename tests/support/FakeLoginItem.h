#pragma once

#include "platform/LoginItem.h"

#include <optional>
#include <string>

namespace tidewell::test {

/// A login item that records its calls, and fails on demand.
class FakeLoginItem final : public LoginItem {
public:
  [[nodiscard]] std::optional<std::string> registerItem() override {
    ++registrations;
    return error;
  }
  [[nodiscard]] std::optional<std::string> unregisterItem() override {
    ++unregistrations;
    return error;
  }

  std::optional<std::string> error;
  int registrations = 0;
  int unregistrations = 0;
};

} // namespace tidewell::test
