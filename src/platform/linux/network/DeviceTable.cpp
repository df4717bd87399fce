#include "platform/linux/network/DeviceTable.h"

#include "base/TextPieces.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <system_error>

#include <fcntl.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace tidewell {
namespace {

// The table of the calling thread's network namespace.
constexpr const char* tablePath = "/proc/thread-self/net/dev";

// Far larger than the table of a machine with thousands of interfaces.
constexpr std::size_t largestTable = 4 << 20;
constexpr std::size_t firstSize = 4096;

std::string_view skipBlanks(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(whitespace), text.size()));
  return text;
}

/// Reads the counters of a line: eight columns about receiving, then eight about sending. Bytes
/// come first, then packets.
std::optional<LinkRecord> readColumns(std::string_view columns, std::string_view name) {
  LinkRecord record{0, std::string(name)};
  const std::array<std::uint64_t*, 10> values{&record.bytesIn,  &record.packetsIn, nullptr, nullptr,
                                              nullptr,          nullptr,           nullptr, nullptr,
                                              &record.bytesOut, &record.packetsOut};
  for (std::uint64_t* const value : values) {
    columns = skipBlanks(columns);
    const auto text = columns.substr(0, columns.find_first_of(whitespace));
    const char* const end = text.data() + text.size();
    if (value != nullptr) {
      const auto [stop, error] = std::from_chars(text.data(), end, *value);
      if (error != std::errc{} || stop != end) {
        return std::nullopt;
      }
    }
    columns.remove_prefix(text.size());
  }
  return record;
}

} // namespace

std::optional<LinkRecord> parseDeviceTable(std::string_view table, std::string_view name) {
  while (!name.empty() && !table.empty()) {
    const auto end = table.find('\n');
    const auto line = skipBlanks(table.substr(0, end));
    // The kernel allows no colon in a name.
    const auto colon = line.find(':');
    if (colon != std::string_view::npos && line.substr(0, colon) == name) {
      return readColumns(line.substr(colon + 1), name);
    }
    table.remove_prefix(end == std::string_view::npos ? table.size() : end + 1);
  }
  return std::nullopt;
}

std::optional<LinkRecord> DeviceTable::device(const std::string& name) {
  if (name.empty() || name.size() >= IFNAMSIZ || !open()) {
    return std::nullopt;
  }
  // A table that changed while it was read may lack a line.
  auto record = readDevice(name);
  return record ? record : readDevice(name);
}

bool DeviceTable::open() {
  if (!m_table.isOpen()) {
    m_table = FileDescriptor(::open(tablePath, O_RDONLY | O_CLOEXEC));
  }
  if (!m_socket.isOpen()) {
    m_socket = FileDescriptor(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  }
  return m_table.isOpen() && m_socket.isOpen();
}

std::optional<LinkRecord> DeviceTable::readDevice(const std::string& name) {
  const auto index = indexOf(name);
  auto record = index ? findDevice(name) : std::nullopt;
  // If it was recreated in between, the counters may be those of either one.
  if (!record || indexOf(name) != index) {
    return std::nullopt;
  }
  record->index = *index;
  return record;
}

std::optional<int> DeviceTable::indexOf(const std::string& name) const {
  ifreq query{};
  name.copy(query.ifr_name, IFNAMSIZ - 1);
  if (::ioctl(m_socket.get(), SIOCGIFINDEX, &query) != 0) {
    return std::nullopt;
  }
  return query.ifr_ifindex;
}

// Stops at the line of this name, because a machine may have a thousand devices.
std::optional<LinkRecord> DeviceTable::findDevice(const std::string& name) {
  m_buffer.resize(std::max(m_buffer.size(), firstSize));
  std::size_t size = 0;
  std::size_t searched = 0;
  while (size < largestTable) {
    const ssize_t count = ::pread(m_table.get(), m_buffer.data() + size, m_buffer.size() - size,
                                  static_cast<off_t>(size));
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count <= 0) {
      m_table.reset();
      return std::nullopt;
    }
    size += static_cast<std::size_t>(count);
    const std::string_view table = std::string_view(m_buffer).substr(0, size);
    const std::size_t wholeLines = table.rfind('\n') + 1;
    if (auto record = parseDeviceTable(table.substr(searched, wholeLines - searched), name)) {
      return record;
    }
    searched = wholeLines;
    if (size == m_buffer.size()) {
      m_buffer.resize(2 * size);
    }
  }
  return std::nullopt;
}

} // namespace tidewell
