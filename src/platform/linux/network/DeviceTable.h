#pragma once

#include "platform/linux/loop/FileDescriptor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// A network interface with the kernel's 64-bit counters.
struct LinkRecord {
  int index = 0;
  std::string name;
  std::uint64_t bytesIn = 0;
  std::uint64_t bytesOut = 0;
  std::uint64_t packetsIn = 0;
  std::uint64_t packetsOut = 0;
};

/// Reads the line of the interface of exactly this name from the text of /proc/net/dev; the index
/// is 0. Returns nullopt if no such line with all counters exists. Any text may be given. Pure.
[[nodiscard]] std::optional<LinkRecord> parseDeviceTable(std::string_view table,
                                                         std::string_view name);

/// The kernel's table of network devices.
///
/// Reading it never waits. A netlink request for a link waits, tens of milliseconds at times, while
/// an interface is made or deleted anywhere on the machine, which would delay the reading as much.
class DeviceTable {
public:
  /// The interface of exactly this name in the network namespace of the thread that asks first.
  /// Returns nullopt on any failure.
  [[nodiscard]] std::optional<LinkRecord> device(const std::string& name);

private:
  [[nodiscard]] bool open();
  [[nodiscard]] std::optional<LinkRecord> readDevice(const std::string& name);
  [[nodiscard]] std::optional<int> indexOf(const std::string& name) const;
  [[nodiscard]] std::optional<LinkRecord> findDevice(const std::string& name);

  FileDescriptor m_table;
  FileDescriptor m_socket; // for queries of indices
  std::string m_buffer;
};

} // namespace tidewell
