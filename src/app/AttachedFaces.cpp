#include "app/AttachedFaces.h"

#include "bus/ResidentInterface.h"
#include "platform/linux/bus/BusObject.h"
#include "platform/linux/bus/SessionBus.h"

#include <cerrno>
#include <string_view>
#include <utility>

namespace tidewell {
namespace {

/// Empty if the message did not come over a bus.
std::string senderOf(sd_bus_message& message) {
  const char* const sender = sd_bus_message_get_sender(&message);
  return sender != nullptr ? sender : "";
}

} // namespace

AttachedFaces::AttachedFaces(SessionBus& bus, std::function<void()> changed)
    : m_bus(bus), m_changed(std::move(changed)), m_lost(bus.onLost([this] {
        if (!std::exchange(m_faces, {}).empty()) {
          m_changed();
        }
      })) {}

void AttachedFaces::describe(BusObject& object) {
  object.method(residentInterface::attachFace, "s", "",
                [this](sd_bus_message& call, auto&) { return attach(call); });
  object.method(residentInterface::detachFace, "", "", [this](sd_bus_message& call, auto&) {
    detach(senderOf(call));
    return 0;
  });
  object.silentProperty(residentInterface::faces, "as",
                        [this](sd_bus_message& reply) { return appendKinds(reply); });
}

int AttachedFaces::attach(sd_bus_message& call) {
  const char* kind = "";
  if (const int result = sd_bus_message_read(&call, "s", &kind); result < 0) {
    return result;
  }
  const std::string program = senderOf(call);
  if (m_faces.contains(program)) {
    return 0;
  }
  if (program.empty() || std::string_view(kind).size() > longestKind) {
    return -EINVAL;
  }
  if (m_faces.size() >= most) {
    return -ENOBUFS;
  }
  // The signal is sent once, when this program gives up its name.
  BusSlot gone = watchOwner(*m_bus.connection(), program,
                            [this, program](auto* /*signal*/) { detach(program); });
  m_faces.emplace(program, Face{kind, std::move(gone)});
  if (m_faces.size() == 1) {
    m_changed();
  }
  return 0;
}

void AttachedFaces::detach(const std::string& program) {
  // Kept to the end, because the handler that calls this may belong to it.
  const auto face = m_faces.extract(program);
  if (face && m_faces.empty()) {
    m_changed();
  }
}

int AttachedFaces::appendKinds(sd_bus_message& message) const {
  BusWriter writer(message);
  writer.open('a', "s");
  for (const auto& [program, face] : m_faces) {
    writer.add("s", face.kind.c_str());
  }
  return writer.close().result();
}

} // namespace tidewell
