#include "control/CommandLine.h"

#include "base/Translation.h"
#include "bus/ResidentInterface.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tidewell {
namespace {

using Verb = ControlCommand::Verb;

struct VerbWords {
  std::string_view word;
  Verb verb;
  bool takesJson;
  bool takesStart;
};
constexpr std::array<VerbWords, 8> verbs = {{
    {"status", Verb::status, true, true},
    {"follow", Verb::follow, false, true},
    {"processes", Verb::processes, true, true},
    {"speedtest", Verb::speedtest, true, true},
    {"open", Verb::open, false, true},
    {"quit", Verb::quit, false, false},
    {"--version", Verb::version, false, false},
    {"--help", Verb::help, false, false},
}};

constexpr std::array<std::pair<std::string_view, FollowFormat>, 5> formats = {{
    {"plain", FollowFormat::plain},
    {"json", FollowFormat::json},
    {"waybar", FollowFormat::waybar},
    {"i3bar", FollowFormat::i3bar},
    {"polybar", FollowFormat::polybar},
}};

constexpr std::array<std::pair<std::string_view, const char*>, 3> windows = {{
    {"panel", residentInterface::openPanel},
    {"details", residentInterface::openDetail},
    {"settings", residentInterface::openSettings},
}};

constexpr std::string_view formatOption = "--format";

std::string unknownOption(std::string_view word) {
  return filled(translated("unknown option \"%1\""), {word});
}

/// Reads arguments one after the other. Each function returns what is wrong, or an empty text.
class ControlArguments {
public:
  explicit ControlArguments(std::span<const std::string_view> arguments) : m_arguments(arguments) {}

  [[nodiscard]] ControlRequest read() {
    while (m_next < m_arguments.size()) {
      if (auto error = take(m_arguments[m_next++]); !error.empty()) {
        return {std::nullopt, std::move(error)};
      }
    }
    if (auto error = check(); !error.empty()) {
      return {std::nullopt, std::move(error)};
    }
    return {m_command, {}};
  }

private:
  std::string take(std::string_view argument) {
    if (argument == "--json") {
      m_command.isJson = true;
    } else if (argument == "--start") {
      m_command.starts = true;
    } else if (argument == formatOption) {
      if (m_next == m_arguments.size()) {
        return translated("--format needs a name");
      }
      return takeFormat(m_arguments[m_next++]);
    } else if (argument.starts_with("--format=")) {
      return takeFormat(argument.substr(formatOption.size() + 1));
    } else {
      return takeWord(argument);
    }
    return {};
  }

  std::string takeFormat(std::string_view name) {
    const auto* const found =
        std::ranges::find(formats, name, &decltype(formats)::value_type::first);
    if (found == formats.end()) {
      return filled(translated("unknown format \"%1\""), {name});
    }
    m_hasFormat = true;
    m_command.format = found->second;
    return {};
  }

  std::string takeWord(std::string_view word) {
    if (m_verb == nullptr) {
      const auto* const found = std::ranges::find(verbs, word, &VerbWords::word);
      if (found == verbs.end()) {
        return word.starts_with('-') ? unknownOption(word)
                                     : filled(translated("unknown command \"%1\""), {word});
      }
      m_verb = found;
      m_command.verb = found->verb;
      return {};
    }
    const auto* const window =
        std::ranges::find(windows, word, &decltype(windows)::value_type::first);
    if (word.starts_with('-')) {
      return unknownOption(word);
    }
    if (m_verb->verb != Verb::open || !m_command.method.empty()) {
      return filled(translated("unexpected argument \"%1\""), {word});
    }
    if (window == windows.end()) {
      return filled(translated("unknown window \"%1\""), {word});
    }
    m_command.method = window->second;
    return {};
  }

  [[nodiscard]] std::string check() const {
    if (m_verb == nullptr) {
      return translated("a command is missing");
    }
    if (m_verb->verb == Verb::open && m_command.method.empty()) {
      return translated("the window is missing: panel, details or settings");
    }
    const bool isJsonWrong = m_command.isJson && !m_verb->takesJson;
    const bool isStartWrong = m_command.starts && !m_verb->takesStart;
    const bool isFormatWrong = m_hasFormat && m_verb->verb != Verb::follow;
    if (isJsonWrong || isStartWrong || isFormatWrong) {
      const std::string option = isJsonWrong ? "--json" : isStartWrong ? "--start" : "--format";
      return filled(translated("%1 does not go with %2"), {option, m_verb->word});
    }
    return {};
  }

  std::span<const std::string_view> m_arguments;
  std::size_t m_next = 0;
  const VerbWords* m_verb = nullptr;
  bool m_hasFormat = false;
  ControlCommand m_command;
};

} // namespace

ControlRequest parseControlArguments(std::span<const std::string_view> arguments) {
  return ControlArguments(arguments).read();
}

std::string_view controlUsage() {
  return translated("Usage: tidewellctl COMMAND [OPTION...]\n"
                    "\n"
                    "  status [--json]           print the present values\n"
                    "  follow [--format FORMAT]  print a line for each change; the format is\n"
                    "                            plain, json, waybar, i3bar or polybar\n"
                    "  processes [--json]        list the programs that use the network\n"
                    "  speedtest [--json]        run a speed test and print the result\n"
                    "  open panel|details|settings\n"
                    "  quit                      end Tidewell\n"
                    "\n"
                    "  --start                   start Tidewell if it is not running\n"
                    "  --version, --help");
}

} // namespace tidewell
