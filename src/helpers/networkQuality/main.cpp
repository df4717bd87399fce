// Measures the line and prints capacities and responsiveness: `networkQuality -s -v`.

#include "helpers/networkQuality/ServerChoice.h"
#include "helpers/networkQuality/SpeedTest.h"
#include "platform/linux/process/Confinement.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <span>
#include <string_view>

#include <curl/curl.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace tidewell {
namespace {

/// Readable once somebody wants the program to end; before any other thread starts.
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

/// Writes all of it, or as much as a reader takes.
void print(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const auto size = ::write(descriptor, text.data(), text.size());
    if (size <= 0) {
      return;
    }
    text.remove_prefix(static_cast<std::size_t>(size));
  }
}

int measure() {
  forbidWritingAndStarting();
  const FileDescriptor stop = terminationSignals();
  curl_global_init(CURL_GLOBAL_DEFAULT);
  TransferLoop loop(stop);
  Progress progress;
  SpeedTest test(loop, progress);
  test.run(documentAddress());
  progress.clear();
  print(STDOUT_FILENO, resultText(test.result()));
  if (test.failure()) {
    print(STDERR_FILENO, "networkQuality: " + *test.failure() + "\n");
  }
  return test.result().download && test.result().upload ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace
} // namespace tidewell

int main(int argumentCount, char** arguments) {
  const std::span words(arguments, static_cast<std::size_t>(argumentCount));
  const bool isKnown = std::all_of(words.begin() + 1, words.end(), [](std::string_view word) {
    return word == "-s" || word == "-v";
  });
  if (!isKnown) {
    tidewell::print(STDERR_FILENO, "usage: networkQuality [-s] [-v]\n");
    return 2;
  }
  // Not `exit`: a name that is still being looked up would keep the program for seconds.
  ::_exit(tidewell::measure());
}
