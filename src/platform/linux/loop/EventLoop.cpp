#include "platform/linux/loop/EventLoop.h"

#include "base/Checked.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <utility>

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>

namespace tidewell {

namespace {

constexpr std::uint64_t wakeUpKey = 0;
constexpr std::uint64_t alarmKey = 1;
constexpr std::uint64_t firstHandlerKey = 2;

// After so many tasks in a row the descriptors get their chance.
constexpr int tasksPerTurn = 64;

Ticks now() { return std::chrono::steady_clock::now().time_since_epoch(); }

bool control(const FileDescriptor& epoll, int operation, int descriptor, std::uint32_t events,
             std::uint64_t key) {
  epoll_event event{};
  event.events = events;
  event.data.u64 = key;
  return ::epoll_ctl(epoll.get(), operation, descriptor, &event) == 0;
}

void drain(const FileDescriptor& counter) {
  std::uint64_t count = 0;
  [[maybe_unused]] const auto size = ::read(counter.get(), &count, sizeof count);
}

} // namespace

class EventLoop::LoopTimer final : public Timer {
public:
  LoopTimer(EventLoop& loop, QueueCore::TimerId timer) : m_loop(loop), m_timer(timer) {}
  ~LoopTimer() override {
    const std::scoped_lock lock(m_loop.m_mutex);
    m_loop.m_core.cancel(m_timer);
  }

private:
  EventLoop& m_loop;
  QueueCore::TimerId m_timer;
};

class EventLoop::Watch final : public FdWatch {
public:
  Watch(EventLoop& loop, int descriptor, std::uint64_t key)
      : m_loop(loop), m_descriptor(descriptor), m_key(key) {}
  ~Watch() override {
    m_loop.m_handlers.erase(m_key);
    control(m_loop.m_epoll, EPOLL_CTL_DEL, m_descriptor, 0, m_key);
  }
  void setEvents(std::uint32_t events) override {
    control(m_loop.m_epoll, EPOLL_CTL_MOD, m_descriptor, events, m_key);
  }

private:
  EventLoop& m_loop;
  int m_descriptor;
  std::uint64_t m_key;
};

EventLoop::EventLoop()
    : m_epoll(::epoll_create1(EPOLL_CLOEXEC)), m_wakeUp(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      m_alarm(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)),
      m_nextHandler(firstHandlerKey) {
  if (!m_epoll.isOpen() || !control(m_epoll, EPOLL_CTL_ADD, m_wakeUp.get(), EPOLLIN, wakeUpKey) ||
      !control(m_epoll, EPOLL_CTL_ADD, m_alarm.get(), EPOLLIN, alarmKey)) {
    fatal("the kernel gives no event loop");
  }
  take();
}

EventLoop::~EventLoop() { release(); }

void EventLoop::post(Task task) {
  bool mustWake = false;
  {
    const std::scoped_lock lock(m_mutex);
    m_core.post(std::move(task));
    mustWake = std::ranges::find(m_helpers, std::this_thread::get_id()) == m_helpers.end();
  }
  if (mustWake && !isCurrent()) {
    wake();
  }
}

void EventLoop::postAfter(Seconds delay, Task task) {
  {
    const std::scoped_lock lock(m_mutex);
    m_core.add(now() + toTicks(delay), Ticks::zero(), std::move(task));
  }
  if (!isCurrent()) {
    wake();
  }
}

std::unique_ptr<Timer> EventLoop::repeat(Seconds first, Seconds period, Task task) {
  QueueCore::TimerId timer = 0;
  {
    const std::scoped_lock lock(m_mutex);
    timer = m_core.add(now() + toTicks(first), toPeriod(period), std::move(task));
  }
  if (!isCurrent()) {
    wake();
  }
  return std::make_unique<LoopTimer>(*this, timer);
}

bool EventLoop::isCurrent() const { return m_holder.load() == std::this_thread::get_id(); }

void EventLoop::addHelper(std::thread::id thread) {
  const std::scoped_lock lock(m_mutex);
  m_helpers.push_back(thread);
}

void EventLoop::removeHelper(std::thread::id thread) {
  const std::scoped_lock lock(m_mutex);
  std::erase(m_helpers, thread);
}

void EventLoop::help() {
  {
    const std::scoped_lock lock(m_mutex);
    if (!m_core.isReady(now())) {
      return;
    }
  }
  if (!m_turn.try_lock()) {
    wake();
    return;
  }
  m_holder = std::this_thread::get_id();
  const bool workLeft = finishTurn();
  release();
  if (workLeft) {
    wake();
  }
}

std::unique_ptr<FdWatch> EventLoop::watch(int descriptor, std::uint32_t events, FdHandler handler) {
  const std::uint64_t key = m_nextHandler++;
  if (!control(m_epoll, EPOLL_CTL_ADD, descriptor, events, key)) {
    return nullptr;
  }
  m_handlers.emplace(key, std::make_shared<FdHandler>(std::move(handler)));
  return std::make_unique<Watch>(*this, descriptor, key);
}

Subscription EventLoop::beforeSleep(std::function<void()> function) {
  return m_beforeSleep.add(std::move(function));
}

void EventLoop::run() {
  std::array<epoll_event, 16> events{};
  while (true) {
    const bool workLeft = finishTurn();
    if (m_quit) {
      m_quit = false;
      return;
    }
    release();
    const int count = ::epoll_wait(m_epoll.get(), events.data(), static_cast<int>(events.size()),
                                   workLeft ? 0 : -1);
    take();
    dispatch({events.data(), static_cast<std::size_t>(std::max(count, 0))});
  }
}

void EventLoop::quit() { m_quit = true; }

void EventLoop::take() {
  m_turn.lock();
  m_holder = std::this_thread::get_id();
}

void EventLoop::release() {
  m_holder = std::thread::id{};
  m_turn.unlock();
}

bool EventLoop::finishTurn() {
  for (int count = 0; count < tasksPerTurn && !m_quit; ++count) {
    QueueCore::Work work;
    {
      const std::scoped_lock lock(m_mutex);
      work = m_core.take(now());
    }
    if (!work) {
      break;
    }
    (*work)();
  }
  m_beforeSleep.notify();
  return armAlarm() || m_quit;
}

bool EventLoop::armAlarm() {
  Ticks due = Ticks::zero();
  {
    const std::scoped_lock lock(m_mutex);
    if (m_core.isReady(now())) {
      return true;
    }
    due = m_core.nextDue().value_or(Ticks::zero());
  }
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

void EventLoop::dispatch(std::span<const epoll_event> events) {
  for (const epoll_event& event : events) {
    // Copied, since the kernel packs its structure: no reference may be bound to what is in it.
    const std::uint64_t key = event.data.u64;
    if (key == wakeUpKey) {
      drain(m_wakeUp);
    } else if (key == alarmKey) {
      drain(m_alarm);
      m_alarmAt = Ticks::zero();
    } else if (const auto found = m_handlers.find(key); found != m_handlers.end()) {
      // Shared, because the handler may end its own watch.
      const std::shared_ptr<FdHandler> handler = found->second;
      (*handler)(event.events);
    }
  }
}

void EventLoop::wake() {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto size = ::write(m_wakeUp.get(), &one, sizeof one);
}

} // namespace tidewell
