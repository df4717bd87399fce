#pragma once

#include "platform/InterfaceCounters.h"
#include "platform/linux/network/DeviceTable.h"

#include <functional>
#include <optional>
#include <string>

namespace tidewell {

/// The kernel's 64-bit byte counters, counted from a base.
///
/// A new base is taken at the first reading, when another interface is read, when one of the same
/// name was recreated, when a counter fell, and after a failed reading. Counting then starts at
/// zero, so traffic from before is never taken for traffic of the moment.
class LinuxInterfaceCounters final : public InterfaceCounters {
public:
  /// Finds an interface by name.
  using Lookup = std::function<std::optional<LinkRecord>(const std::string&)>;

  /// Borrows the table.
  explicit LinuxInterfaceCounters(DeviceTable& table);
  explicit LinuxInterfaceCounters(Lookup lookup);

  [[nodiscard]] std::optional<ByteCounts> read(const std::string& interface) override;

private:
  [[nodiscard]] bool continues(const LinkRecord& link) const;

  Lookup m_lookup;
  std::optional<LinkRecord> m_base;
  std::optional<LinkRecord> m_last;
};

} // namespace tidewell
