#include "ui/application/QtQueue.h"

#include "base/Ticks.h"

#include <QCoreApplication>
#include <QEvent>
#include <QSocketNotifier>
#include <QTimer>

#include <chrono>
#include <utility>

#include <sys/epoll.h>

namespace tidewell {
namespace {

std::chrono::milliseconds milliseconds(Seconds span) {
  return std::chrono::ceil<std::chrono::milliseconds>(toTicks(span));
}

const auto taskEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

class TaskEvent final : public QEvent {
public:
  explicit TaskEvent(Task task) : QEvent(taskEvent), m_task(std::move(task)) {}

  void run() const { runAtOnce(m_task); }

private:
  Task m_task;
};

class QtTimer final : public Timer {
public:
  QtTimer(Seconds first, Seconds period, Task task) : m_task(std::move(task)) {
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this, period] {
      if (const Ticks next = toPeriod(period); next > Ticks::zero()) {
        m_timer.start(milliseconds(period));
      }
      const Task fire = m_task; // a copy, since it may destroy this timer
      runAtOnce(fire);
    });
    m_timer.start(milliseconds(first));
  }

private:
  Task m_task;
  QTimer m_timer;
};

class QtWatch final : public FdWatch {
public:
  QtWatch(int descriptor, EventLoop::FdHandler handler)
      : m_notifier(descriptor, QSocketNotifier::Read), m_handler(std::move(handler)) {
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] {
      const EventLoop::FdHandler readable = m_handler; // may destroy this watch
      readable(EPOLLIN);
    });
  }
  void setEvents(std::uint32_t events) override { m_notifier.setEnabled((events & EPOLLIN) != 0); }

private:
  QSocketNotifier m_notifier;
  EventLoop::FdHandler m_handler;
};

} // namespace

bool QtQueue::Context::event(QEvent* event) {
  if (event->type() != taskEvent) {
    return QObject::event(event);
  }
  static_cast<const TaskEvent*>(event)->run();
  return true;
}

void QtQueue::post(Task task) {
  QCoreApplication::postEvent(&m_context, new TaskEvent(std::move(task)));
}

void QtQueue::postAfter(Seconds delay, Task task) {
  post([this, delay, task = std::move(task)] {
    QTimer::singleShot(milliseconds(delay), &m_context, [task] { runAtOnce(task); });
  });
}

std::unique_ptr<Timer> QtQueue::repeat(Seconds first, Seconds period, Task task) {
  return std::make_unique<QtTimer>(first, period, std::move(task));
}

WatchDescriptor qtWatch() {
  return [](int descriptor, std::uint32_t /*events*/, EventLoop::FdHandler handler) {
    return std::make_unique<QtWatch>(descriptor, std::move(handler));
  };
}

} // namespace tidewell
