#include "platform/linux/bus/BusQuestion.h"

#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/loop/EventLoop.h"

#include <cstdint>
#include <memory>
#include <utility>

namespace tidewell {
namespace {

/// A call under way.
class Call {
public:
  Call(EventLoop& loop, SessionBus& bus, BusQuestion question, Seconds limit)
      : m_question(std::move(question)), m_limit(loop.repeat(limit, 0.0, [this] { end(nullptr); })),
        m_lost(bus.onLost([this] { m_pending.reset(); })),
        m_connected(bus.onConnected([this](sd_bus& connection) { send(connection); })) {}

  Async<BusMessage> reply() {
    if (!m_isOver) {
      co_await m_waiter;
    }
    co_return std::move(m_reply);
  }

private:
  void send(sd_bus& connection) {
    const auto call = takeFrom<BusMessage>([&](sd_bus_message** made) {
      return sd_bus_message_new_method_call(&connection, made, m_question.service, m_question.path,
                                            m_question.interface, m_question.member);
    });
    bool isComplete = call && sd_bus_message_set_auto_start(call.get(), 0) >= 0;
    for (const char* argument : m_question.arguments) {
      isComplete = isComplete && sd_bus_message_append(call.get(), "s", argument) >= 0;
    }
    if (isComplete) {
      m_pending = withHandler([this](sd_bus_message* reply) { end(reply); },
                              [&](auto** slot, auto callback, void* own) {
                                return sd_bus_call_async(&connection, slot, call.get(), callback,
                                                         own, UINT64_MAX);
                              });
    }
  }

  void end(sd_bus_message* reply) {
    m_isOver = true;
    m_reply.reset(reply == nullptr ? nullptr : sd_bus_message_ref(reply));
    m_waiter.resume(); // may destroy this call
  }

  BusQuestion m_question;
  bool m_isOver = false;
  BusMessage m_reply;
  Waiter m_waiter;
  BusSlot m_pending;
  std::unique_ptr<Timer> m_limit;
  Subscription m_lost;
  Subscription m_connected;
};

} // namespace

Async<BusMessage> ask(EventLoop& loop, SessionBus& bus, BusQuestion question, Seconds limit) {
  Call call(loop, bus, std::move(question), limit);
  co_return co_await call.reply();
}

} // namespace tidewell
