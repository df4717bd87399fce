#pragma once

#include "platform/linux/bus/BusMessages.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/loop/EventLoop.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tidewell::test {

/// A notice as received over the bus.
struct ReceivedNotice {
  std::string application;
  std::uint32_t replaces = 0;
  std::string icon;
  std::string title;
  std::string body;
  std::map<std::string, std::string> hints; // as text
  std::int32_t expiry = 0;
};

/// Takes the place of a desktop's notification server, on a connection of its own.
class FakeNotificationServer {
public:
  enum class Manner { answers, refuses, hangs, talksNonsense };

  FakeNotificationServer(EventLoop& loop, std::string address,
                         std::vector<std::string> ownCapabilities = {"body"})
      : capabilities(std::move(ownCapabilities)), m_bus(loop, std::move(address)),
        m_connected(m_bus.onConnected([this](sd_bus& bus) { appear(bus); })) {}

  /// Whether it owns its name, or queues for it after another server.
  [[nodiscard]] bool isThere() const { return m_isThere; }

  /// Releases its name but stays on the bus.
  void resign() { sd_bus_release_name_async(m_bus.connection(), nullptr, name, nullptr, nullptr); }

  /// Answers the pending calls in their order.
  void answerLate() {
    for (const BusMessage& call : std::exchange(m_hanging, {})) {
      reply(*call, Manner::answers);
    }
  }

  Manner toNotices = Manner::answers;
  Manner toQuestions = Manner::answers;
  Manner toProperties = Manner::answers;
  std::map<std::string, bool> properties; // with their interfaces: "interface.name"
  std::vector<std::string> capabilities;
  std::uint32_t lastId = 100;
  std::vector<ReceivedNotice> notices;
  int questions = 0; // for the capabilities
  int propertyQuestions = 0;

private:
  static constexpr const char* name = "org.freedesktop.Notifications";

  void appear(sd_bus& bus) {
    m_object = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
      return sd_bus_add_object(&bus, slot, "/org/freedesktop/Notifications", &called, this);
    });
    const auto answered = [](sd_bus_message*, void* self, sd_bus_error*) {
      static_cast<FakeNotificationServer*>(self)->m_isThere = true;
      return 0;
    };
    m_request = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
      return sd_bus_request_name_async(&bus, slot, name, SD_BUS_NAME_QUEUE, answered, this);
    });
  }

  static int called(sd_bus_message* call, void* self, sd_bus_error* /*error*/) {
    auto& server = *static_cast<FakeNotificationServer*>(self);
    if (isNotify(*call)) {
      server.notices.push_back(readNotice(*call));
      server.reply(*call, server.toNotices);
    } else if (isGet(*call)) {
      ++server.propertyQuestions;
      server.reply(*call, server.toProperties);
    } else {
      ++server.questions;
      server.reply(*call, server.toQuestions);
    }
    return 1;
  }

  static bool isNotify(sd_bus_message& call) {
    return sd_bus_message_is_method_call(&call, name, "Notify") > 0;
  }

  static bool isGet(sd_bus_message& call) {
    return sd_bus_message_is_method_call(&call, propertiesInterface, "Get") > 0;
  }

  void reply(sd_bus_message& call, Manner manner) {
    if (manner == Manner::hangs) {
      m_hanging.emplace_back(sd_bus_message_ref(&call));
    } else if (manner == Manner::refuses) {
      sd_bus_reply_method_errorf(&call, "org.example.Refused", "%s", "not today");
    } else if (manner == Manner::talksNonsense) {
      sd_bus_reply_method_return(&call, "(id)", 7, 0.5);
    } else if (isNotify(call)) {
      sd_bus_reply_method_return(&call, "u", ++lastId);
    } else if (isGet(call)) {
      replyProperty(call);
    } else {
      replyCapabilities(call);
    }
  }

  void replyProperty(sd_bus_message& call) const {
    const char* interface = "";
    const char* property = "";
    sd_bus_message_read(&call, "ss", &interface, &property);
    const auto found = properties.find(std::string(interface) + "." + property);
    if (found == properties.end()) {
      sd_bus_reply_method_errorf(&call, SD_BUS_ERROR_UNKNOWN_PROPERTY, "%s", property);
    } else {
      sd_bus_reply_method_return(&call, "v", "b", found->second ? 1 : 0);
    }
  }

  void replyCapabilities(sd_bus_message& call) const {
    const auto answer = takeFrom<BusMessage>(
        [&](sd_bus_message** made) { return sd_bus_message_new_method_return(&call, made); });
    sd_bus_message_open_container(answer.get(), 'a', "s");
    for (const std::string& capability : capabilities) {
      sd_bus_message_append(answer.get(), "s", capability.c_str());
    }
    sd_bus_message_close_container(answer.get());
    sd_bus_send(nullptr, answer.get(), nullptr);
  }

  static ReceivedNotice readNotice(sd_bus_message& call) {
    const char* application = "";
    const char* icon = "";
    const char* title = "";
    const char* body = "";
    ReceivedNotice notice;
    sd_bus_message_read(&call, "susss", &application, &notice.replaces, &icon, &title, &body);
    notice.application = application;
    notice.icon = icon;
    notice.title = title;
    notice.body = body;
    sd_bus_message_skip(&call, "as");
    sd_bus_message_enter_container(&call, 'a', "{sv}");
    const char* hint = nullptr;
    while (sd_bus_message_enter_container(&call, 'e', "sv") > 0) {
      sd_bus_message_read(&call, "s", &hint);
      notice.hints[hint] = readHint(call);
      sd_bus_message_exit_container(&call);
    }
    sd_bus_message_exit_container(&call);
    sd_bus_message_read(&call, "i", &notice.expiry);
    return notice;
  }

  /// The value of a hint with its type, but for strings.
  static std::string readHint(sd_bus_message& call) {
    const char* text = "";
    std::uint8_t byte = 0;
    int truth = 0;
    if (sd_bus_message_read(&call, "v", "y", &byte) > 0) {
      return "byte " + std::to_string(byte);
    }
    if (sd_bus_message_read(&call, "v", "b", &truth) > 0) {
      return truth != 0 ? "boolean true" : "boolean false";
    }
    return sd_bus_message_read(&call, "v", "s", &text) > 0 ? text : "of another type";
  }

  bool m_isThere = false;
  std::vector<BusMessage> m_hanging;
  SessionBus m_bus;
  BusSlot m_object;
  BusSlot m_request;
  Subscription m_connected;
};

} // namespace tidewell::test
