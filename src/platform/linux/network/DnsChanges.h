#pragma once

#include "platform/linux/files/FileWatcher.h"

#include <functional>
#include <memory>

namespace tidewell {

class EventLoop;
struct DnsPlaces;

/// Reports that a file with DNS servers may have changed, a fifth of a second after it did: some
/// are rewritten in place.
class DnsChanges {
public:
  /// Borrows the loop.
  DnsChanges(EventLoop& loop, const DnsPlaces& places, std::function<void()> observer);

private:
  void arm();
  void beginToWait();
  void changed();

  EventLoop& m_loop;
  std::function<void()> m_observer;
  FileWatcher m_files;
  bool m_isWaiting = false;       // for writers to finish
  std::unique_ptr<Timer> m_timer; // until the next look
};

} // namespace tidewell
