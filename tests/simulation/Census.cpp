#include "Census.h"

#include "CountedMemory.h"
#include "Simulation.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <iterator>

#include <malloc.h>

namespace tidewell::test {

namespace {

// What is published last differs from evening to evening: lists, names and addresses.
constexpr int evenings = 3;

long openDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

} // namespace

std::vector<Census::Count> Census::count(Simulation& world) {
  const auto& scheduler = world.machine.scheduler;
  const long pieces = CountedMemory::pieces();
  return {{"pieces of memory", pieces, 40},
          {"bytes of memory", static_cast<long>(::mallinfo2().uordblks), 1'000'000},
          // Tracking that was switched on while it was on leaves its first timer running, and so
          // one child now and then. The tolerance is for what the desktop has yet to answer.
          {"timers", static_cast<long>(scheduler.timers() - world.toolModel.leftTimers()), 2},
          {"tasks that wait", static_cast<long>(scheduler.waiting()), 0},
          {"descriptors watched", static_cast<long>(world.loop.watches()), 0},
          {"open descriptors", openDescriptors(), 8},
          {"children", static_cast<long>(world.processes.count()), 1}};
}

void Census::take(Simulation& world) {
  const std::vector<Count> now = count(world);
  m_usual.resize(now.size());
  for (std::size_t index = 0; index < now.size(); ++index) {
    const Count& present = now[index];
    if (m_taken < evenings) {
      m_usual[index] = std::max(m_usual[index], present.number);
    }
    m_findings.require(present.number <= m_usual[index] + present.tolerance,
                       "it grows:", present.what, present.number, "after", m_usual[index]);
  }
  ++m_taken;
}

} // namespace tidewell::test
