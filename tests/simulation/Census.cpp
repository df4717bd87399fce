#include "Census.h"

#include "CountedMemory.h"
#include "Simulation.h"

#include <cstddef>
#include <filesystem>
#include <iterator>

namespace tidewell::test {

namespace {

long openDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

} // namespace

std::vector<Census::Count> Census::count(Simulation& world) {
  const auto& scheduler = world.machine.scheduler;
  const long pieces = CountedMemory::pieces();
  const long bytes = CountedMemory::bytes();
  // Evenings differ in the last published values and in past requests: lists, names, a record for
  // each kind of window and notice.
  return {{"pieces of memory", pieces, 40},
          {"bytes of memory", bytes, 12'000},
          {"timers", static_cast<long>(scheduler.timers() - world.toolModel.watchdogs()), 0},
          {"tasks that wait", static_cast<long>(scheduler.waiting()), 0},
          {"descriptors watched", static_cast<long>(world.loop.watches()), 0},
          {"open descriptors", openDescriptors(), 2},
          {"children", static_cast<long>(world.processes.count()), 0}};
}

void Census::take(Simulation& world) {
  const std::vector<Count> now = count(world);
  if (m_first.empty()) {
    m_first = now;
  }
  for (std::size_t index = 0; index < now.size(); ++index) {
    m_findings.require(now[index].number <= m_first[index].number + now[index].tolerance,
                       "it grows:", now[index].what, now[index].number, "after",
                       m_first[index].number);
  }
  ++m_taken;
}

} // namespace tidewell::test
