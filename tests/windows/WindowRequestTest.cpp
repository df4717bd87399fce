#include "windowRequests/WindowRequest.h"

#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

using Kind = WindowRequest::Kind;
using Point = WindowRequest::Point;

TEST(WindowRequest, ComesBackFromItsMessage) {
  const std::vector<WindowRequest> requests = {
      {Kind::panel, "", {}, ""},
      {Kind::panel, "abc_TIME123", Point{812, -24}, ""},
      {Kind::detail, "t", {}, ""},
      {Kind::settings, "", {}, ""},
      {Kind::copy, "", {}, "203.0.113.7 and more"},
      {Kind::showItem, "", {}, ""},
      {Kind::hideItem, "", {}, ""},
      {Kind::quit, "", {}, ""},
  };
  for (const WindowRequest& request : requests) {
    EXPECT_EQ(parseWindowRequest(messageOf(request)), request) << messageOf(request);
  }
}

TEST(WindowRequest, LeavesOutATokenThatWouldBreakTheMessage) {
  for (const char* token : {"two words", "line\nbreak", "caf\xC3\xA9", ""}) {
    const auto request = parseWindowRequest(messageOf({Kind::detail, token, {}, {}}));
    ASSERT_TRUE(request) << token;
    EXPECT_EQ(request->token, "");
  }
  EXPECT_EQ(messageOf({Kind::detail, std::string(5000, 't'), {}, {}}), "detail -");
}

TEST(WindowRequest, IsCutAtTheLongestMessage) {
  EXPECT_EQ(messageOf({Kind::copy, "", {}, std::string(10'000, 'x')}).size(), longestWindowMessage);
}

TEST(WindowRequest, IsNoneForNonsense) {
  for (const char* message : {"", " ", "panels -", "PANEL -", "panel", "panel caf\xC3\xA9"}) {
    EXPECT_FALSE(parseWindowRequest(message)) << message;
  }
}

TEST(WindowRequest, HasNoPlaceWhenTheNumbersAreNone) {
  for (const char* message : {"panel -", "panel - 1", "panel - 1 x", "panel - 99999999999 1"}) {
    const auto request = parseWindowRequest(message);
    ASSERT_TRUE(request) << message;
    EXPECT_FALSE(request->point) << message;
  }
}

TEST(WindowReport, ComesBackFromItsMessage) {
  using Report = WindowReport::Kind;
  for (const WindowReport report :
       {WindowReport{Report::taken, Kind::panel}, WindowReport{Report::opened, Kind::detail},
        WindowReport{Report::closed, Kind::settings}}) {
    EXPECT_EQ(parseWindowReport(messageOf(report)), report);
  }
  for (const char* message : {"", "opened", "opened nothing", "shut panel"}) {
    EXPECT_FALSE(parseWindowReport(message)) << message;
  }
}

} // namespace
} // namespace tidewell::test
