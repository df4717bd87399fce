// Any messages from a session bus: replies to the resident, owner changes, calls of its item, menu
// and interface. Each call is answered once, published values stay readable, and the menu is
// unchanged afterwards.

#include "support/AnyBody.h"
#include "support/ResidentOnBus.h"

#include <array>
#include <cstring>

namespace {

using namespace tidewell;
using fuzz::BusPeer;
using fuzz::require;

constexpr const char* busName = "org.freedesktop.DBus";
constexpr const char* client = ":1.7";

/// A method or property of the resident with its types.
struct Member {
  const char* path;
  const char* interface;
  const char* name;
  const char* in;
};

constexpr const char* item = "/StatusNotifierItem";
constexpr const char* itemInterface = "org.kde.StatusNotifierItem";
constexpr const char* menu = "/MenuBar";
constexpr const char* menuInterface = "com.canonical.dbusmenu";
constexpr const char* face = "/com/halden/Tidewell";
constexpr const char* faceInterface = "com.halden.Tidewell";

constexpr std::array<Member, 23> members = {{
    {menu, menuInterface, "GetLayout", "iias"},
    {menu, menuInterface, "GetGroupProperties", "aias"},
    {menu, menuInterface, "GetProperty", "is"},
    {menu, menuInterface, "Event", "isvu"},
    {menu, menuInterface, "EventGroup", "a(isvu)"},
    {menu, menuInterface, "AboutToShow", "i"},
    {menu, menuInterface, "AboutToShowGroup", "ai"},
    {item, itemInterface, "Activate", "ii"},
    {item, itemInterface, "SecondaryActivate", "ii"},
    {item, itemInterface, "ContextMenu", "ii"},
    {item, itemInterface, "Scroll", "is"},
    {item, itemInterface, "ProvideXdgActivationToken", "s"},
    {face, faceInterface, "OpenPanel", ""},
    {face, faceInterface, "OpenPanelAt", "ii"},
    {face, faceInterface, "AttachFace", "s"},
    {face, faceInterface, "DetachFace", ""},
    {face, faceInterface, "RunSpeedTest", ""},
    {face, faceInterface, "Quit", ""},
    {face, propertiesInterface, "GetAll", "s"},
    {item, propertiesInterface, "GetAll", "s"},
    {menu, propertiesInterface, "Get", "ss"},
    {face, propertiesInterface, "Set", "ssv"},
    {menu, "org.freedesktop.DBus.Introspectable", "Introspect", ""},
}};

/// The answer of a well-behaved bus to a call.
const char* answerTypes(const char* member) {
  const std::array<std::pair<const char*, const char*>, 6> usual = {
      {{"GetNameOwner", "s"},
       {"GetConnectionUnixProcessID", "u"},
       {"RequestName", "u"},
       {"Notify", "u"},
       {"GetCapabilities", "as"},
       {"Get", "v"}}};
  for (const auto& [name, types] : usual) {
    if (std::strcmp(name, member) == 0) {
      return types;
    }
  }
  return "";
}

void answer(BusPeer& peer, FuzzedDataProvider& input) {
  if (peer.calls.empty()) {
    return;
  }
  const BusMessage call = std::move(peer.calls.front());
  peer.calls.pop_front();
  const int manner = input.ConsumeIntegralInRange(0, 9);
  if (manner == 0) {
    sd_bus_reply_method_errorf(call.get(), "org.example.Refused", "%s", "not today");
    return;
  }
  const auto reply = takeFrom<BusMessage>(
      [&](sd_bus_message** made) { return sd_bus_message_new_method_return(call.get(), made); });
  const std::string types =
      manner == 1 ? fuzz::anySignature(input) : answerTypes(sd_bus_message_get_member(call.get()));
  if (fuzz::appendAny(*reply, types, input) >= 0) {
    peer.send(reply.get());
  }
}

void tellOfOwner(BusPeer& peer, FuzzedDataProvider& input) {
  const auto signal = takeFrom<BusMessage>([&](sd_bus_message** made) {
    return sd_bus_message_new_signal(peer.bus(), made, "/org/freedesktop/DBus", busName,
                                     "NameOwnerChanged");
  });
  sd_bus_message_set_sender(signal.get(), busName);
  const char* name = input.PickValueInArray(
      {"org.kde.StatusNotifierWatcher", "org.freedesktop.Notifications", client});
  const std::string rest =
      input.ConsumeIntegralInRange(0, 7) == 0 ? fuzz::anySignature(input) : std::string("ss");
  if (sd_bus_message_append(signal.get(), "s", name) >= 0 &&
      fuzz::appendAny(*signal, rest, input) >= 0) {
    peer.send(signal.get());
  }
}

/// The call's cookie; 0 if it could not be made.
std::uint64_t call(BusPeer& peer, const Member& member, FuzzedDataProvider& input) {
  const auto message = takeFrom<BusMessage>([&](sd_bus_message** made) {
    return sd_bus_message_new_method_call(peer.bus(), made, ":1.1", member.path, member.interface,
                                          member.name);
  });
  if (input.ConsumeBool()) {
    sd_bus_message_set_sender(message.get(), client);
  }
  const std::string types =
      input.ConsumeIntegralInRange(0, 9) == 0 ? fuzz::anySignature(input) : member.in;
  return fuzz::appendAny(*message, types, input) >= 0 ? peer.send(message.get()) : 0;
}

void publish(fuzz::ResidentOnBus& resident, FuzzedDataProvider& input) {
  const auto rate = input.ConsumeIntegral<std::int64_t>();
  const auto latency = input.ConsumeFloatingPoint<double>();
  resident.sampler.currentDownloadBytesPerSec.set(rate);
  resident.sampler.latencyMs.set(latency);
  resident.sampler.snapshots.mutate([&](SnapshotList& list) {
    list.push_back(std::make_shared<const NetworkSnapshot>(latency, rate, -1, latency, 0.0, 0.0));
  });
  resident.monitor.isConnected.set(input.ConsumeBool());
  resident.speedTest.isRunning.set(input.ConsumeBool());
  resident.notices.add({input.ConsumeBool() ? "speed-drop" : "high-latency", "title", "body"});
}

void act(BusPeer& peer, fuzz::ResidentOnBus& resident, FuzzedDataProvider& input) {
  switch (input.ConsumeIntegralInRange(0, 5)) {
  case 0:
  case 1:
    answer(peer, input);
    break;
  case 2:
    tellOfOwner(peer, input);
    break;
  case 3:
    publish(resident, input);
    break;
  default: {
    peer.answers.clear();
    const auto cookie = call(peer, input.PickValueInArray(members), input);
    peer.settle(resident.loop);
    require(cookie == 0 || (peer.answers.size() == 1 && peer.answers[0] == cookie));
    break;
  }
  }
  peer.settle(resident.loop);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static BusPeer peer;
  FuzzedDataProvider input(data, size);
  fuzz::ResidentOnBus resident(peer);
  peer.settle(resident.loop);
  for (int step = 0; step < 24 && input.remaining_bytes() > 0; ++step) {
    act(peer, resident, input);
  }
  require(resident.bus.connection() != nullptr && peer.isConnected());
  FuzzedDataProvider nothing(nullptr, 0);
  peer.answers.clear();
  const auto cookie = call(peer, members[0], nothing);
  peer.settle(resident.loop);
  require(cookie != 0 && peer.answers.size() == 1 && peer.answers[0] == cookie);
  return 0;
}
