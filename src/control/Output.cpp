#include "control/Output.h"

#include "base/DisplayText.h"

#include <cerrno>
#include <string>

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tidewell {
namespace {

/// Writes everything, also to a pipe that does not block. False if that fails, with `errno`.
bool writeWhole(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const auto count = ::write(descriptor, text.data(), text.size());
    if (count >= 0) {
      text.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno == EAGAIN) {
      pollfd room{descriptor, POLLOUT, 0};
      ::poll(&room, 1, -1);
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

} // namespace

Written writeOutput(std::string_view text) {
  if (writeWhole(STDOUT_FILENO, text)) {
    return Written::whole;
  }
  return errno == EPIPE ? Written::readerGone : Written::failed;
}

void complain(std::string_view text) {
  static_cast<void>(writeWhole(STDERR_FILENO, "tidewellctl: " + displayText(text) + "\n"));
}

std::size_t terminalColumns(int descriptor) {
  constexpr std::size_t usual = 80; // of a terminal that does not know
  winsize size{};
  if (::isatty(descriptor) == 0 || ::ioctl(descriptor, TIOCGWINSZ, &size) != 0) {
    return 0;
  }
  return size.ws_col == 0 ? usual : size.ws_col;
}

void showProgress(std::string_view text) {
  if (terminalColumns(STDERR_FILENO) > 0) {
    constexpr std::string_view clearLine = "\r\033[K";
    static_cast<void>(writeWhole(STDERR_FILENO, std::string(clearLine) + std::string(text)));
  }
}

} // namespace tidewell
