#pragma once

#include "base/Scheduler.h"

#include <string>

namespace tidewell {

class EventLoop;

/// Plays the desktop's sound for a new message in a helper process, which links the sound library.
class NotificationSound {
public:
  /// The helper at this absolute path plays the sound once. Borrows loop and queue.
  NotificationSound(EventLoop& loop, WorkQueue& background, std::string helper);

  /// Starts the sound and returns at once. Silent without the helper or a sound.
  void play();

private:
  EventLoop& m_loop;
  WorkQueue& m_background;
  std::string m_helper;
};

} // namespace tidewell
