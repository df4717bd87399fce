// Measures the line and prints capacities and responsiveness: `networkQuality [-s] [-v]`.

#include "base/NumberText.h"
#include "helpers/networkQuality/SpeedTest.h"
#include "platform/linux/process/Confinement.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

#include <curl/curl.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace tidewell {
namespace {

/// Readable once the program is asked to end. To be called before another thread starts.
FileDescriptor terminationSignals() {
  struct sigaction ignored {};
  ignored.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &ignored, nullptr);
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    sigaddset(&signals, signal);
  }
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  return FileDescriptor(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
}

/// Writes the text, or as much of it as the reader takes.
void print(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const auto size = ::write(descriptor, text.data(), text.size());
    if (size <= 0) {
      return;
    }
    text.remove_prefix(static_cast<std::size_t>(size));
  }
}

/// Shows a person at a terminal how the test goes. Returns whether anything is shown. An empty text
/// clears the line.
bool showProgress(const std::string& text) {
  constexpr const char* backToEmptyLine = "\r\x1b[K";
  const bool isTerminal = ::isatty(STDERR_FILENO) == 1;
  if (isTerminal) {
    print(STDERR_FILENO, backToEmptyLine + text);
  }
  return isTerminal && !text.empty();
}

int measure() {
  const FileDescriptor stop = terminationSignals();
  curl_global_init(CURL_GLOBAL_DEFAULT);
  TransferLoop loop(stop);
  bool isShown = false;
  SpeedTest test(loop, [&isShown](const std::string& direction, double bytesPerSecond) {
    isShown = showProgress(direction + ": " + fixedText(inMegabits(bytesPerSecond), 1) + " Mbit/s");
  });
  test.run();
  if (isShown) {
    showProgress("");
  }
  print(STDOUT_FILENO, resultText(test.result()));
  if (test.failure()) {
    // For the program that reads the output, and for people.
    if (::isatty(STDOUT_FILENO) != 1) {
      print(STDOUT_FILENO, failureText(*test.failure()));
    }
    print(STDERR_FILENO, "networkQuality: " + *test.failure() + "\n");
  }
  return test.result().download && test.result().upload ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace
} // namespace tidewell

int main(int argumentCount, char** arguments) {
  tidewell::confineToNetwork();
  const std::span words(arguments, static_cast<std::size_t>(argumentCount));
  const bool isKnown = std::all_of(words.begin() + 1, words.end(), [](std::string_view word) {
    return word == "-s" || word == "-v";
  });
  if (!isKnown) {
    tidewell::print(STDERR_FILENO, "usage: networkQuality [-s] [-v]\n");
    return 2;
  }
  // `exit` would wait, for seconds at times, for a host name that is still being resolved.
  ::_exit(tidewell::measure());
}
