// Takes the place of the windows' process: records its requests, and does what the text of a copy
// request says.

#include "windowRequests/WindowRequest.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <system_error>

#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using Request = tidewell::WindowRequest::Kind;
using Report = tidewell::WindowReport::Kind;

void report(Report kind, Request window = {}) {
  const std::string message = messageOf(tidewell::WindowReport{kind, window});
  ::send(STDIN_FILENO, message.data(), message.size(), MSG_NOSIGNAL);
}

void writeDown(const std::string& message) {
  if (const char* path = std::getenv("TIDEWELL_FAKE_WINDOWS_LOG")) {
    std::ofstream(path, std::ios::app) << message << std::endl;
  }
}

std::string ownArgument;

void obey(const std::string& order) {
  if (order == "crash without taking it") {
    ::raise(SIGKILL);
  }
  if (order == "leave without taking it") {
    std::_Exit(0);
  }
  if (order == "hang") {
    // Ignores everything but the end of the resident.
    pollfd query{STDIN_FILENO, 0, 0};
    ::poll(&query, 1, -1);
    std::_Exit(1);
  }
  if (order == "print the argument") {
    std::cout << ownArgument << std::endl;
  }
  if (order == "name the output") {
    std::error_code error;
    writeDown(std::filesystem::read_symlink("/proc/self/fd/1", error).string());
  }
  report(Report::taken);
  if (order == "crash") {
    ::raise(SIGKILL);
  }
  if (order == "leave") {
    std::_Exit(0);
  }
  if (order == "close") {
    report(Report::closed, Request::panel);
  }
}

void take(const tidewell::WindowRequest& request) {
  if (request.kind == Request::quit) {
    std::_Exit(0);
  }
  if (request.kind == Request::copy) {
    obey(request.text);
    return;
  }
  report(Report::taken);
  report(Report::opened, request.kind);
}

} // namespace

int main(int argumentCount, char** arguments) {
  ownArgument = argumentCount > 1 ? arguments[1] : "";
  std::array<char, tidewell::longestWindowMessage> piece{};
  while (true) {
    const auto size = ::recv(STDIN_FILENO, piece.data(), piece.size(), 0);
    if (size < 0) {
      ::usleep(1000); // the socket is non-blocking, as the toolkit wants it
      continue;
    }
    if (size == 0) {
      writeDown("end");
      return 0;
    }
    const std::string message(piece.data(), static_cast<std::size_t>(size));
    writeDown(message);
    if (const auto request = tidewell::parseWindowRequest(message)) {
      take(*request);
    }
  }
}
