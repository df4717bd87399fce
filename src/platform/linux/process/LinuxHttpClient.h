#pragma once

#include "platform/HttpClient.h"
#include "platform/linux/loop/FileDescriptor.h"

#include <mutex>
#include <optional>
#include <string>

namespace tidewell {

/// Fetches by a helper process, which takes the encryption, the untrusted reply and their memory
/// with it when it ends.
///
/// No request outlives its time: the helper is ended, so nothing can come late. Nor does one
/// outlive the path, so that the loss of a path is told at once although the lookups come first.
class LinuxHttpClient final : public HttpClient {
public:
  /// The helper of this absolute path is given the address, prints the body and succeeds, or fails.
  explicit LinuxHttpClient(std::string helper);

  [[nodiscard]] std::optional<std::string> get(const std::string& url, Seconds wait) override;

  /// Tells whether the machine reaches the internet, as it is taken to do at first. While it does
  /// not, requests end, those under way included, with no answer. Any thread.
  void setPathSatisfied(bool isSatisfied);

  /// Ends every request and refuses new ones: the program is about to exit. Any thread.
  void endAll();

private:
  void update();

  std::string m_helper;
  FileDescriptor m_stop; // eventfd, readable while there is to be no request
  std::mutex m_mutex;
  bool m_isSatisfied = true; // guarded by m_mutex
  bool m_isEnding = false;   // guarded by m_mutex
};

} // namespace tidewell
