#pragma once

#include "platform/HttpClient.h"

#include <optional>
#include <set>
#include <string>

namespace tidewell {

class EventLoop;
class SpawnedChild;

/// Fetches by a helper process, which takes the encryption, the untrusted reply and their memory
/// with it when it ends.
///
/// The helper is ended after the time of its request, so no reply comes late. It is also ended
/// when the path is lost, because the loss is published only after the lookups.
class LinuxHttpClient final : public HttpClient {
public:
  /// The helper of this absolute path is given the address, prints the body and succeeds, or fails.
  /// Borrows the loop.
  LinuxHttpClient(EventLoop& loop, std::string helper);
  ~LinuxHttpClient() override;

  [[nodiscard]] Async<std::optional<std::string>> get(std::string url, Seconds wait) override;

  /// Sets whether the machine reaches the internet, as it is assumed to at first. While it does
  /// not, requests end without a reply, those under way included.
  void setPathSatisfied(bool isSatisfied);

private:
  class Request;

  EventLoop& m_loop;
  std::string m_helper;
  bool m_isSatisfied = true;
  std::set<SpawnedChild*> m_running;
};

} // namespace tidewell
