#include "platform/linux/process/LinuxHttpClient.h"

#include "base/IfMemoryAllows.h"
#include "platform/linux/process/SpawnedChild.h"

#include <memory>
#include <utility>

namespace tidewell {

/// The helper for one request, listed among those that run.
class LinuxHttpClient::Request {
public:
  Request(LinuxHttpClient& client, const std::string& url, Seconds wait)
      : m_running(client.m_running),
        m_child(SpawnedChild::start(client.m_loop, client.m_helper, {url}, wait,
                                    ChildPriority::utility)) {
    m_running.insert(m_child.get());
  }
  Request(Request&&) = delete;
  ~Request() { m_running.erase(m_child.get()); }

  [[nodiscard]] SpawnedChild* child() const { return m_child.get(); }

private:
  std::set<SpawnedChild*>& m_running;
  std::unique_ptr<SpawnedChild> m_child;
};

LinuxHttpClient::LinuxHttpClient(EventLoop& loop, std::string helper, Observer observer)
    : m_loop(loop), m_helper(std::move(helper)), m_observer(std::move(observer)) {}

LinuxHttpClient::~LinuxHttpClient() = default;

Async<std::optional<std::string>> LinuxHttpClient::get(std::string url, Seconds wait) {
  if (!m_isSatisfied) {
    co_return std::nullopt;
  }
  std::optional<Request> request;
  std::optional<std::string> body;
  if (ifMemoryAllows([&] { request.emplace(*this, url, wait); }) && request->child() != nullptr) {
    co_await request->child()->exit();
    if (request->child()->status() == 0) {
      body = request->child()->output();
    }
  }
  if (m_observer && m_isSatisfied) {
    m_observer(body);
  }
  co_return body;
}

void LinuxHttpClient::setPathSatisfied(bool isSatisfied) {
  m_isSatisfied = isSatisfied;
  for (SpawnedChild* child : m_running) {
    if (child != nullptr && !isSatisfied) {
      child->stop();
    }
  }
}

} // namespace tidewell
