// Prints the body of the reply to one HTTPS GET: `publicAddress URL`. Fails without a word when no
// trustworthy reply has come after three seconds.

#include "helpers/publicAddress/HttpsFetch.h"
#include "platform/linux/process/Confinement.h"

#include <cstdlib>

#include <unistd.h>

namespace {

constexpr long limitMilliseconds = 3000;

} // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 2) {
    return EXIT_FAILURE;
  }
  tidewell::forbidWritingAndStarting();
  const auto body = tidewell::fetchOverHttps(arguments[1], limitMilliseconds);
  // A pipe takes so short a text whole or not at all.
  const bool isPrinted = body && ::write(STDOUT_FILENO, body->data(), body->size()) ==
                                     static_cast<ssize_t>(body->size());
  return isPrinted ? EXIT_SUCCESS : EXIT_FAILURE;
}
