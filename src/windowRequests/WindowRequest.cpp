#include "windowRequests/WindowRequest.h"

#include "base/TextPieces.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace tidewell {
namespace {

using Kind = WindowRequest::Kind;

constexpr std::array<std::pair<Kind, std::string_view>, 7> names = {{
    {Kind::panel, "panel"},
    {Kind::detail, "detail"},
    {Kind::settings, "settings"},
    {Kind::copy, "copy"},
    {Kind::showItem, "showItem"},
    {Kind::hideItem, "hideItem"},
    {Kind::quit, "quit"},
}};

constexpr std::string_view noToken = "-";

std::string nameOf(Kind kind) {
  const auto* const found =
      std::ranges::find(names, kind, &std::pair<Kind, std::string_view>::first);
  return std::string(found->second);
}

std::optional<Kind> kindOf(std::string_view name) {
  const auto* const found =
      std::ranges::find(names, name, &std::pair<Kind, std::string_view>::second);
  return found == names.end() ? std::nullopt : std::optional(found->first);
}

/// Removes and returns the text's first word, and removes the space after it.
std::string_view takeWord(std::string_view& text) {
  const auto end = std::min(text.find(' '), text.size());
  const auto word = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return word;
}

bool isToken(std::string_view token) {
  return !token.empty() && token.size() <= longestActivationToken &&
         std::ranges::all_of(token, [](char letter) { return letter > ' ' && letter <= '~'; });
}

} // namespace

std::string messageOf(const WindowRequest& request) {
  std::string message = nameOf(request.kind) + " ";
  message += isToken(request.token) ? request.token : noToken;
  if (request.point) {
    message += " " + std::to_string(request.point->x) + " " + std::to_string(request.point->y);
  } else if (!request.text.empty()) {
    message += " " + request.text;
  }
  return message.substr(0, longestWindowMessage);
}

std::string messageOf(const WindowReport& report) {
  switch (report.kind) {
  case WindowReport::Kind::opened:
    return "opened " + nameOf(report.window);
  case WindowReport::Kind::closed:
    return "closed " + nameOf(report.window);
  case WindowReport::Kind::taken:
    break;
  }
  return "taken";
}

std::optional<WindowRequest> parseWindowRequest(std::string_view message) {
  const auto kind = kindOf(takeWord(message));
  const auto token = takeWord(message);
  if (!kind || (token != noToken && !isToken(token))) {
    return std::nullopt;
  }
  WindowRequest request{*kind, token == noToken ? "" : std::string(token), {}, {}};
  if (*kind == Kind::panel) {
    const auto x = parseInteger<int>(takeWord(message));
    const auto y = parseInteger<int>(takeWord(message));
    if (x && y) {
      request.point = {*x, *y};
    }
  } else {
    request.text = message;
  }
  return request;
}

std::optional<WindowReport> parseWindowReport(std::string_view message) {
  using Report = WindowReport::Kind;
  const auto word = takeWord(message);
  if (word == "taken") {
    return WindowReport{Report::taken, {}};
  }
  const auto window = kindOf(message);
  if (!window || (word != "opened" && word != "closed")) {
    return std::nullopt;
  }
  return WindowReport{word == "opened" ? Report::opened : Report::closed, *window};
}

} // namespace tidewell
