#include "platform/linux/loop/EpollLoop.h"

#include "base/Checked.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <utility>

#include <sys/epoll.h>
#include <sys/timerfd.h>
#include <unistd.h>

namespace tidewell {
namespace {

constexpr std::uint64_t alarmKey = 0;
constexpr std::uint64_t firstHandlerKey = 1;

// Timers that are set this soon after an alarm count from it, so that they fall due together with
// those of the same grid.
constexpr Seconds alarmReach = 0.02;

// Descriptors are polled after this many tasks in a row.
constexpr int tasksPerTurn = 64;

Ticks now() { return std::chrono::steady_clock::now().time_since_epoch(); }

bool control(const FileDescriptor& epoll, int operation, int descriptor, std::uint32_t events,
             std::uint64_t key) {
  epoll_event event{};
  event.events = events;
  event.data.u64 = key;
  return ::epoll_ctl(epoll.get(), operation, descriptor, &event) == 0;
}

} // namespace

class EpollLoop::LoopTimer final : public Timer {
public:
  LoopTimer(EpollLoop& loop, QueueCore::TimerId timer) : m_loop(loop), m_timer(timer) {}
  ~LoopTimer() override { m_loop.m_core.cancel(m_timer); }

private:
  EpollLoop& m_loop;
  QueueCore::TimerId m_timer;
};

class EpollLoop::Watch final : public FdWatch {
public:
  Watch(EpollLoop& loop, int descriptor, std::uint64_t key)
      : m_loop(loop), m_descriptor(descriptor), m_key(key) {}
  ~Watch() override {
    m_loop.m_handlers.erase(m_key);
    control(m_loop.m_epoll, EPOLL_CTL_DEL, m_descriptor, 0, m_key);
  }
  void setEvents(std::uint32_t events) override {
    control(m_loop.m_epoll, EPOLL_CTL_MOD, m_descriptor, events, m_key);
  }

private:
  EpollLoop& m_loop;
  int m_descriptor;
  std::uint64_t m_key;
};

EpollLoop::EpollLoop()
    : m_epoll(::epoll_create1(EPOLL_CLOEXEC)),
      m_alarm(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)),
      m_nextHandler(firstHandlerKey) {
  if (!m_epoll.isOpen() || !control(m_epoll, EPOLL_CTL_ADD, m_alarm.get(), EPOLLIN, alarmKey)) {
    fatal("the kernel provides no event loop");
  }
}

EpollLoop::~EpollLoop() = default;

void EpollLoop::post(Task task) { m_core.post(std::move(task)); }

void EpollLoop::postAfter(Seconds delay, Task task) {
  m_core.add(timerBase() + toTicks(delay), Ticks::zero(), std::move(task));
}

std::unique_ptr<Timer> EpollLoop::repeat(Seconds first, Seconds period, Task task) {
  return std::make_unique<LoopTimer>(
      *this, m_core.add(timerBase() + toTicks(first), toPeriod(period), std::move(task)));
}

Ticks EpollLoop::timerBase() const {
  const Ticks time = now();
  return time - m_lastAlarm < toTicks(alarmReach) ? m_lastAlarm : time;
}

std::unique_ptr<FdWatch> EpollLoop::watch(int descriptor, std::uint32_t events, FdHandler handler) {
  const std::uint64_t key = m_nextHandler++;
  if (!control(m_epoll, EPOLL_CTL_ADD, descriptor, events, key)) {
    return nullptr;
  }
  m_handlers.emplace(key, std::make_shared<FdHandler>(std::move(handler)));
  return std::make_unique<Watch>(*this, descriptor, key);
}

Subscription EpollLoop::beforeSleep(std::function<void()> function) {
  return m_beforeSleep.add(std::move(function));
}

void EpollLoop::run() {
  std::array<epoll_event, 16> events{};
  while (true) {
    const bool workLeft = finishTurn();
    if (m_quit) {
      m_quit = false;
      return;
    }
    const int count = ::epoll_wait(m_epoll.get(), events.data(), static_cast<int>(events.size()),
                                   workLeft ? 0 : -1);
    dispatch({events.data(), static_cast<std::size_t>(std::max(count, 0))});
  }
}

bool EpollLoop::finishTurn() {
  for (int count = 0; count < tasksPerTurn && !m_quit; ++count) {
    const QueueCore::Work work = m_core.take(now());
    if (!work) {
      break;
    }
    runAtOnce(*work);
  }
  m_beforeSleep.notify();
  return armAlarm() || m_quit;
}

bool EpollLoop::armAlarm() {
  if (m_core.isReady(now())) {
    return true;
  }
  const Ticks due = m_core.nextDue().value_or(Ticks::zero());
  if (due != m_alarmAt) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(due);
    itimerspec alarm{};
    alarm.it_value.tv_sec = seconds.count();
    alarm.it_value.tv_nsec = static_cast<long>((due - seconds).count());
    ::timerfd_settime(m_alarm.get(), TFD_TIMER_ABSTIME, &alarm, nullptr);
    m_alarmAt = due;
  }
  return false;
}

void EpollLoop::dispatch(std::span<const epoll_event> events) {
  for (const epoll_event& event : events) {
    // Copied, because epoll_event is packed and cannot be referenced.
    const std::uint64_t key = event.data.u64;
    if (key == alarmKey) {
      std::uint64_t firings = 0;
      [[maybe_unused]] const auto size = ::read(m_alarm.get(), &firings, sizeof firings);
      m_lastAlarm = std::exchange(m_alarmAt, Ticks::zero());
    } else if (const auto found = m_handlers.find(key); found != m_handlers.end()) {
      // Shared, because the handler may end its own watch.
      const std::shared_ptr<FdHandler> handler = found->second;
      (*handler)(event.events);
    }
  }
}

} // namespace tidewell
