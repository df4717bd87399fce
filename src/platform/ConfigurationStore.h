#pragma once

#include <optional>
#include <string>

namespace tidewell {

/// Answers questions about the machine's network configuration.
class ConfigurationStore {
public:
  ConfigurationStore() = default;
  ConfigurationStore(const ConfigurationStore&) = delete;
  ConfigurationStore& operator=(const ConfigurationStore&) = delete;
  virtual ~ConfigurationStore() = default;

  /// Name of the interface that carries traffic to the public internet; none when nothing does and
  /// nothing did. Asked of the system at every call. Any thread.
  [[nodiscard]] virtual std::optional<std::string> primaryInterface() = 0;
};

} // namespace tidewell
