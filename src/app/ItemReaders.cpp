#include "app/ItemReaders.h"

#include "platform/linux/process/ProcessName.h"

#include <cstdint>
#include <string_view>
#include <utility>

namespace tidewell {
namespace {

constexpr std::string_view label = "XAyatanaLabel";
constexpr std::string_view pictures = "IconPixmap";

} // namespace

void ItemReaders::read(const char* property, sd_bus_message& answer) {
  sd_bus* const bus = sd_bus_message_get_bus(&answer);
  sd_bus_message* const request = bus != nullptr ? sd_bus_get_current_message(bus) : nullptr;
  const char* const sender = request != nullptr ? sd_bus_message_get_sender(request) : nullptr;
  if (sender == nullptr) {
    return;
  }
  auto found = m_readers.find(sender);
  if (found == m_readers.end()) {
    if (m_readers.size() >= most) {
      return;
    }
    found = m_readers.try_emplace(sender).first;
    watch(*bus, found->first);
  }
  // A program that reads everything at once need not show all of it.
  if (std::string_view(sd_bus_message_get_member(request)) != "Get") {
    return;
  }
  Reader& reader = found->second;
  const auto before = reader.shows();
  reader.readsLabel = reader.readsLabel || property == label;
  reader.readsPictures = reader.readsPictures || property == pictures;
  if (reader.shows() != before) {
    m_changed();
  }
}

void ItemReaders::watch(sd_bus& bus, const std::string& connection) {
  Reader& reader = m_readers[connection];
  // Before the query, so that the end of the program is not missed.
  reader.gone = watchOwner(bus, connection, [this, connection](auto* /*signal*/) {
    // Kept to the end, because the handler that calls this belongs to it.
    const auto ended = m_readers.extract(connection);
    if (ended && ended.mapped().shows()) {
      m_changed();
    }
  });
  reader.process = callMethod(
      bus, busDaemon, "GetConnectionUnixProcessID",
      [this, connection](sd_bus_message* reply) { identified(connection, reply); }, "s",
      connection.c_str());
}

void ItemReaders::identified(const std::string& connection, sd_bus_message* reply) {
  const auto found = m_readers.find(connection);
  if (found == m_readers.end()) {
    return;
  }
  std::uint32_t process = 0;
  const bool isKnown = reply != nullptr && sd_bus_message_read(reply, "u", &process) > 0;
  found->second.name = isKnown ? processName(process) : std::string();
  if (found->second.shows()) {
    m_changed();
  }
}

void ItemReaders::forget() { m_readers.clear(); }

ItemPresentation ItemReaders::presentation() const {
  std::optional<ItemPresentation> common;
  for (const auto& [connection, reader] : m_readers) {
    const auto shown = reader.shows();
    if (shown && common.value_or(*shown) != *shown) {
      return ItemPresentation::squareTile;
    }
    common = shown ? shown : common;
  }
  return common.value_or(ItemPresentation::squareTile);
}

std::optional<ItemPresentation> ItemReaders::Reader::shows() const {
  if (!name) {
    return std::nullopt;
  }
  if (const auto known = presentationOf(*name)) {
    return known;
  }
  // A host that reads both need not show the label.
  return readsLabel && !readsPictures ? std::optional(ItemPresentation::label) : std::nullopt;
}

} // namespace tidewell
