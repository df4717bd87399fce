#pragma once

#include "base/Scheduler.h"
#include "platform/linux/loop/FileDescriptor.h"

#include <memory>
#include <string>

namespace tidewell {

/// Plays the desktop's sound for a new message, by a helper process that carries the sound library.
class NotificationSound {
public:
  /// The helper of this absolute path plays the sound once and ends. Borrows the queue.
  NotificationSound(WorkQueue& background, std::string helper);

  /// Starts the sound and returns at once. Without a helper or a sound there is silence.
  void play();

  /// Ends a sound that plays: the program is about to exit. Any thread.
  void endAll();

private:
  WorkQueue& m_background;
  std::string m_helper;
  std::shared_ptr<const FileDescriptor> m_ending; // eventfd, readable from `endAll` on
};

} // namespace tidewell
