// Plays the desktop's sound for a new message once, unless the desktop's settings forbid it. Exits
// with 0 if it was played, 1 if it could not be played, and 2 if it is forbidden. A process of its
// own, so that the resident loads neither a sound library nor its threads.

#include "helpers/notificationSound/SoundSettings.h"
#include "platform/linux/process/Confinement.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <thread>

#include <canberra.h>

namespace {

constexpr int exitForbidden = 2;
constexpr std::uint32_t onlySound = 1;
constexpr auto longest = std::chrono::seconds(5);
constexpr auto step = std::chrono::milliseconds(20);

void finished(ca_context* /*context*/, std::uint32_t /*sound*/, int /*error*/, void* done) {
  static_cast<std::atomic<bool>*>(done)->store(true);
}

} // namespace

int main() {
  tidewell::forbidNewPrivileges();
  if (tidewell::isSoundForbidden()) {
    return exitForbidden;
  }
  ca_context* context = nullptr;
  if (ca_context_create(&context) < 0) {
    return 1;
  }
  ca_proplist* properties = nullptr;
  std::atomic<bool> done = false;
  int result = ca_proplist_create(&properties);
  if (result >= 0) {
    ca_proplist_sets(properties, CA_PROP_EVENT_ID, "message-new-instant");
    ca_proplist_sets(properties, CA_PROP_EVENT_DESCRIPTION, "Tidewell notice");
    ca_proplist_sets(properties, CA_PROP_APPLICATION_NAME, "Tidewell");
    ca_proplist_sets(properties, CA_PROP_CANBERRA_CACHE_CONTROL, "never");
    result = ca_context_play_full(context, onlySound, properties, finished, &done);
    ca_proplist_destroy(properties);
  }
  const auto end = std::chrono::steady_clock::now() + longest;
  while (result >= 0 && !done && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(step);
  }
  ca_context_destroy(context);
  return result < 0 ? 1 : 0;
}
