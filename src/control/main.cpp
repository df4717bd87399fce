// tidewellctl: asks the resident on the session bus, for terminals, scripts and bars.

#include "base/Translation.h"
#include "control/CommandLine.h"
#include "control/Control.h"
#include "control/Output.h"
#include "platform/linux/files/Catalogue.h"
#include "platform/linux/files/FilePath.h"

#include <csignal>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {
namespace {

ExitStatus answer(const std::vector<std::string_view>& arguments) {
  const ControlRequest request = parseControlArguments(arguments);
  if (!request.command) {
    complain(filled(translated("%1; try \"tidewellctl --help\""), {request.error}));
    return ExitStatus::usage;
  }
  switch (request.command->verb) {
  case ControlCommand::Verb::help:
    return printLine(std::string(controlUsage()));
  case ControlCommand::Verb::version:
    return printLine("tidewellctl " TIDEWELL_VERSION);
  default:
    return Control(*request.command).run();
  }
}

} // namespace
} // namespace tidewell

int main(int argumentCount, char** arguments) {
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN)); // a closed pipe is an error of write(2)
  tidewell::loadCatalogue(tidewell::catalogueDirectory(tidewell::runningProgram()));
  const std::vector<std::string_view> words(arguments + (argumentCount > 0 ? 1 : 0),
                                            arguments + argumentCount);
  return static_cast<int>(tidewell::answer(words));
}
