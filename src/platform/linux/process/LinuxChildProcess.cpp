#include "platform/linux/process/LinuxChildProcess.h"

#include "base/IfMemoryAllows.h"
#include "platform/linux/process/SpawnedChild.h"
#include "platform/linux/process/SystemTools.h"

#include <memory>

namespace tidewell {

/// Keeps a child listed as terminable.
class LinuxChildProcess::Listing {
public:
  Listing(std::map<Id, SpawnedChild*>& running, SpawnedChild& child)
      : m_running(running), m_id(child.id()) {
    m_running.emplace(m_id, &child);
  }
  Listing(Listing&&) = delete;
  ~Listing() { m_running.erase(m_id); }

private:
  std::map<Id, SpawnedChild*>& m_running;
  Id m_id;
};

Async<std::optional<std::string>> LinuxChildProcess::run(ToolCall call,
                                                         std::function<void(Id child)> launched) {
  std::unique_ptr<SpawnedChild> child;
  std::optional<Listing> listing;
  const bool hasMemory = ifMemoryAllows([&] {
    if (const auto command = commandOf(call)) {
      child = SpawnedChild::start(m_loop, command->executable, command->arguments, command->limit,
                                  command->priority);
    }
  });
  if (!hasMemory || !child) {
    co_return std::nullopt;
  }
  // Without memory for this, only the limit ends a child that hangs.
  [[maybe_unused]] const bool isListed = ifMemoryAllows([&] {
    listing.emplace(m_running, *child);
    if (launched) {
      launched(child->id());
    }
  });
  co_await child->exit();
  listing.reset();
  co_return child->output();
}

void LinuxChildProcess::terminate(Id child) {
  if (const auto found = m_running.find(child); found != m_running.end()) {
    found->second->terminate();
  }
}

} // namespace tidewell
