#include "base/QueueCore.h"

namespace tidewell {

void QueueCore::post(Task task) {
  m_ready.push_back({std::make_shared<const Task>(std::move(task)), std::nullopt});
}

QueueCore::TimerId QueueCore::add(Ticks due, Ticks period, Task task) {
  const TimerId timer = m_nextId++;
  m_timers.emplace(timer, TimedTask{due, period, std::make_shared<const Task>(std::move(task))});
  m_due.emplace(due, timer);
  return timer;
}

void QueueCore::cancel(TimerId timer) {
  const auto found = m_timers.find(timer);
  if (found != m_timers.end()) {
    m_due.erase({found->second.due, timer});
    m_timers.erase(found);
  }
}

QueueCore::Work QueueCore::take(Ticks now) {
  collectDue(now);
  while (!m_ready.empty()) {
    const Entry entry = std::move(m_ready.front());
    m_ready.pop_front();
    if (Work work = entry.timer ? fire(*entry.timer, now) : entry.work) {
      return work;
    }
  }
  return nullptr;
}

bool QueueCore::isReady(Ticks now) {
  collectDue(now);
  while (!m_ready.empty() && m_ready.front().timer && !m_timers.contains(*m_ready.front().timer)) {
    m_ready.pop_front();
  }
  return !m_ready.empty();
}

std::optional<Ticks> QueueCore::nextDue() const {
  if (m_due.empty()) {
    return std::nullopt;
  }
  return m_due.begin()->first;
}

void QueueCore::collectDue(Ticks now) {
  while (!m_due.empty() && m_due.begin()->first <= now) {
    m_ready.push_back({nullptr, m_due.begin()->second});
    m_due.erase(m_due.begin());
  }
}

QueueCore::Work QueueCore::fire(TimerId timer, Ticks now) {
  const auto found = m_timers.find(timer);
  if (found == m_timers.end()) {
    return nullptr;
  }
  TimedTask& timed = found->second;
  Work work = timed.work;
  if (timed.period == Ticks::zero()) {
    m_timers.erase(found);
    return work;
  }
  timed.due += timed.period * ((now - timed.due) / timed.period + 1);
  m_due.emplace(timed.due, timer);
  return work;
}

} // namespace tidewell
