#pragma once

#include "platform/InterfaceCounters.h"
#include "platform/linux/network/DeviceTable.h"

#include <functional>
#include <mutex>
#include <optional>
#include <string>

namespace tidewell {

/// The kernel's 64-bit byte counters, served from a base.
///
/// The base is taken when an interface becomes the one that is read: at the first reading, when
/// another one is asked for, when one of the same name was made anew, when its counters fell, and
/// after a reading that failed. Counting then starts at zero, so that what an interface moved while
/// nobody looked is never mistaken for traffic of the moment.
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
  std::mutex m_mutex;
  std::optional<LinkRecord> m_base; // guarded by m_mutex
  std::optional<LinkRecord> m_last; // guarded by m_mutex
};

} // namespace tidewell
