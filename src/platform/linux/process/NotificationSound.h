#pragma once

#include "base/Scheduler.h"

#include <string>

namespace tidewell {

class EventLoop;

/// Plays the desktop's sound for a new message, by a helper process that carries the sound library.
class NotificationSound {
public:
  /// The helper of this absolute path plays the sound once and ends. Borrows loop and queue.
  NotificationSound(EventLoop& loop, WorkQueue& background, std::string helper);

  /// Starts the sound and returns at once. Without a helper or a sound there is silence.
  void play();

private:
  EventLoop& m_loop;
  WorkQueue& m_background;
  std::string m_helper;
};

} // namespace tidewell
