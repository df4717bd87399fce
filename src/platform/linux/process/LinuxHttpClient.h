#pragma once

#include "platform/HttpClient.h"

#include <functional>
#include <optional>
#include <set>
#include <string>

namespace tidewell {

class EventLoop;
class SpawnedChild;

/// Fetches in a helper process, so that TLS, the untrusted reply and their memory stay out of this
/// one.
///
/// The helper is stopped at its request's limit, so no reply comes late. It is also stopped when
/// the path is lost, because the loss is published only after the lookups.
class LinuxHttpClient final : public HttpClient {
public:
  /// Called with each reply, or nullopt for a request that failed though the machine reached the
  /// internet.
  using Observer = std::function<void(const std::optional<std::string>& body)>;

  /// The helper at this absolute path takes the URL and prints the body, or fails. Borrows the
  /// loop.
  LinuxHttpClient(EventLoop& loop, std::string helper, Observer observer = {});
  ~LinuxHttpClient() override;

  [[nodiscard]] Async<std::optional<std::string>> get(std::string url, Seconds wait) override;

  /// Sets whether the machine reaches the internet; initially true. While false, requests end
  /// without a reply, including those under way.
  void setPathSatisfied(bool isSatisfied);

private:
  class Request;

  EventLoop& m_loop;
  std::string m_helper;
  Observer m_observer;
  bool m_isSatisfied = true;
  std::set<SpawnedChild*> m_running;
};

} // namespace tidewell
