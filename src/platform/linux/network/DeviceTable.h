#pragma once

#include "platform/linux/loop/FileDescriptor.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// What the kernel tells of one network interface. Counters are unsigned and 64 bits wide.
struct LinkRecord {
  int index = 0;
  std::string name;
  std::uint64_t bytesIn = 0;
  std::uint64_t bytesOut = 0;
};

/// The interface of exactly this name in a text as /proc/net/dev holds it, with an index of zero;
/// none when the text holds no such line with both counters. Any text may be given. Pure.
[[nodiscard]] std::optional<LinkRecord> parseDeviceTable(std::string_view table,
                                                         std::string_view name);

/// The kernel's table of network devices with their 64-bit counters.
///
/// Reading it waits for nobody. A question for a link over rtnetlink waits, tens of milliseconds at
/// times, while an interface is made or deleted anywhere on the machine; a reading that late is
/// wrong by as much.
class DeviceTable {
public:
  /// The interface of exactly this name. Every failure is an absent answer. Any thread; the table
  /// is that of the network namespace of the thread that asks first.
  [[nodiscard]] std::optional<LinkRecord> device(const std::string& name);

private:
  [[nodiscard]] bool open();
  [[nodiscard]] std::optional<LinkRecord> readDevice(const std::string& name);
  [[nodiscard]] std::optional<int> indexOf(const std::string& name) const;
  [[nodiscard]] std::optional<LinkRecord> findDevice(const std::string& name);

  std::mutex m_mutex;
  FileDescriptor m_table;  // guarded by m_mutex, as all below
  FileDescriptor m_socket; // answers for indices
  std::string m_buffer;
};

} // namespace tidewell
