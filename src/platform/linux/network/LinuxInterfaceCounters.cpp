#include "platform/linux/network/LinuxInterfaceCounters.h"

#include <cstdint>
#include <utility>

namespace tidewell {

LinuxInterfaceCounters::LinuxInterfaceCounters(DeviceTable& table)
    : LinuxInterfaceCounters([&table](const std::string& name) { return table.device(name); }) {}

LinuxInterfaceCounters::LinuxInterfaceCounters(Lookup lookup) : m_lookup(std::move(lookup)) {}

std::optional<ByteCounts> LinuxInterfaceCounters::read(const std::string& interface) {
  const std::optional<LinkRecord> link = m_lookup(interface);
  if (!link) {
    m_last.reset();
    return std::nullopt;
  }
  if (!continues(*link)) {
    m_base = *link;
  }
  m_last = *link;
  return ByteCounts{static_cast<std::int64_t>(link->bytesIn - m_base->bytesIn),
                    static_cast<std::int64_t>(link->bytesOut - m_base->bytesOut)};
}

bool LinuxInterfaceCounters::continues(const LinkRecord& link) const {
  return m_last && m_last->index == link.index && m_last->name == link.name &&
         m_last->bytesIn <= link.bytesIn && m_last->bytesOut <= link.bytesOut;
}

} // namespace tidewell
