#pragma once

#include "app/ItemHost.h"
#include "platform/linux/bus/BusMessages.h"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tidewell {

/// Finds out what the programs that read the item can show. Needed where a service of its own, such
/// as kded, owns the watcher's name, because its process says nothing about the panel.
class ItemReaders {
public:
  /// How many connections are remembered at a time. A session has one host, or one for each bar.
  static constexpr std::size_t most = 8;

  /// `changed` is called when `presentation` may have changed.
  explicit ItemReaders(std::function<void()> changed) : m_changed(std::move(changed)) {}

  /// Call while a property is read. `answer` is the reply that sd-bus is filling. The bus is asked
  /// once for the process of each connection.
  void read(const char* property, sd_bus_message& answer);

  /// Forgets all readers, because the watcher has changed or the bus is lost.
  void forget();

  /// What all hosts among the readers show: that of the table, or a label if a host reads the label
  /// and no pictures. The tile if they differ, or if there is none.
  [[nodiscard]] ItemPresentation presentation() const;

private:
  struct Reader {
    BusSlot gone;
    BusSlot process;                 // the query for it
    std::optional<std::string> name; // of the process, once the bus has answered
    bool readsLabel = false;
    bool readsPictures = false;

    [[nodiscard]] std::optional<ItemPresentation> shows() const;
  };

  void watch(sd_bus& bus, const std::string& connection);
  void identified(const std::string& connection, sd_bus_message* reply);

  std::function<void()> m_changed;
  std::map<std::string, Reader> m_readers; // by unique name
};

} // namespace tidewell
