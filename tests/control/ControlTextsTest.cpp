#include "control/JsonText.h"
#include "control/ValueTexts.h"

#include <clocale>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace tidewell {
namespace {

ResidentValues sampleValues() {
  ResidentValues values;
  values.plain = {{"MenubarText", std::string("↓12K ↑3K")},
                  {"Status", std::string("excellent")},
                  {"LatencyMs", 12.34},
                  {"JitterMs", 0.44},
                  {"PacketLossPercent", 5.0},
                  {"DownloadBytesPerSec", std::int64_t{12345}},
                  {"IsConnected", true}};
  return values;
}

ResidentValues withStatus(const std::string& status) {
  ResidentValues values = sampleValues();
  values.plain["Status"] = status;
  return values;
}

std::string lineOf(FollowFormat format, const ResidentValues& values) {
  return followLine(format, Presence::present, values);
}

TEST(ControlTexts, PutTheStatusOnOneLine) {
  EXPECT_EQ(statusLine(Presence::present, sampleValues()),
            "↓12K ↑3K, excellent, latency 12.3 ms, jitter 0.4 ms, loss 5 %");
  EXPECT_EQ(statusLine(Presence::absent, {}), "not running");
  EXPECT_EQ(statusLine(Presence::silent, {}), "not responding");
}

TEST(ControlTexts, ShowADashForAnUnknownLatency) {
  ResidentValues values = sampleValues();
  values.plain["LatencyMs"] = 0.0;
  EXPECT_EQ(statusLine(Presence::present, values),
            "↓12K ↑3K, excellent, latency —, jitter 0.4 ms, loss 5 %");
}

TEST(ControlTexts, ShowNoControlCharacters) {
  ResidentValues values = sampleValues();
  values.plain["MenubarText"] = std::string("a\n\033[2J");
  values.processes = {{1, "x\ny", 1, 2, 3, 0.5}};
  EXPECT_EQ(statusLine(Presence::present, values).find_first_of("\n\033"), std::string::npos);
  EXPECT_EQ(processTable(values, 0), "  DOWNLOAD    UPLOAD  PROGRAM\n"
                                     "    0 KB/s    0 KB/s  x\xEF\xBF\xBDy");
}

TEST(ControlTexts, NameJsonKeysAsThePropertiesOnTheBus) {
  EXPECT_EQ(
      statusJson(Presence::present, sampleValues()),
      "{\"running\":true,\"downloadBytesPerSec\":12345,\"isConnected\":true,\"jitterMs\":0.44,"
      "\"latencyMs\":12.34,\"menubarText\":\"↓12K ↑3K\",\"packetLossPercent\":5,"
      "\"status\":\"excellent\"}");
  EXPECT_EQ(statusJson(Presence::absent, sampleValues()), "{\"running\":false}");
  EXPECT_EQ(statusJson(Presence::silent, {}), "{\"running\":true,\"responding\":false}");
}

TEST(ControlTexts, EscapeJson) {
  EXPECT_EQ(jsonText("a\"b\\c\n\t\x01\x1f\x7f/é"), "\"a\\\"b\\\\c\\n\\t\\u0001\\u001f\x7f/é\"");
  EXPECT_EQ(jsonText("\xff"), "\"\xEF\xBF\xBD\"");
  EXPECT_EQ(jsonText(std::string_view("a\0b", 3)), "\"a\\u0000b\"");
}

TEST(ControlTexts, WriteNumbersForEveryLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  std::setlocale(LC_ALL, "de_DE.UTF-8"); // if there is one
  EXPECT_EQ(jsonText(1234.5), "1234.5");
  EXPECT_EQ(jsonText(-0.000001), "-1e-06");
  EXPECT_EQ(jsonText(std::numeric_limits<double>::infinity()), "null");
  EXPECT_EQ(jsonText(std::numeric_limits<double>::quiet_NaN()), "null");
  EXPECT_EQ(jsonText(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
  EXPECT_EQ(jsonText(std::numeric_limits<double>::lowest()), "-1.7976931348623157e+308");
  std::setlocale(LC_ALL, before.c_str());
}

TEST(ControlTexts, ReadMissingAndWrongPropertiesAsDefaults) {
  ResidentValues values;
  values.plain["LatencyMs"] = std::string("fast");
  EXPECT_EQ(statusLine(Presence::present, values), ", , latency —, jitter 0.0 ms, loss 0 %");
}

TEST(ControlTexts, HideWaybarsModuleWhileThereIsNothingToShow) {
  EXPECT_EQ(lineOf(FollowFormat::waybar, sampleValues()),
            "{\"text\":\"↓12K ↑3K\",\"class\":\"excellent\","
            "\"tooltip\":\"excellent, latency 12.3 ms, jitter 0.4 ms, loss 5 %\"}");
  EXPECT_EQ(followLine(FollowFormat::waybar, Presence::absent, {}),
            "{\"text\":\"\",\"class\":\"off\",\"tooltip\":\"not running\"}");
}

TEST(ControlTexts, GiveWaybarNoMarkup) {
  ResidentValues values = withStatus("<&>");
  values.plain["MenubarText"] = std::string("<b>&amp;\"</b>");
  const std::string line = lineOf(FollowFormat::waybar, values);
  EXPECT_TRUE(line.starts_with("{\"text\":\"&lt;b&gt;&amp;amp;\\\"&lt;/b&gt;\","
                               "\"class\":\"&lt;&amp;&gt;\","))
      << line;
}

TEST(ControlTexts, SpeakI3barsProtocol) {
  EXPECT_EQ(followHeader(FollowFormat::i3bar), "{\"version\":1,\"stop_signal\":0}\n[\n[]\n");
  EXPECT_EQ(lineOf(FollowFormat::i3bar, sampleValues()),
            ",[{\"name\":\"tidewell\",\"full_text\":\"↓12K ↑3K\"}]");
  EXPECT_EQ(lineOf(FollowFormat::i3bar, withStatus("degraded")),
            ",[{\"name\":\"tidewell\",\"full_text\":\"↓12K ↑3K\",\"color\":\"#f0a020\"}]");
  EXPECT_EQ(followLine(FollowFormat::i3bar, Presence::absent, withStatus("down")),
            ",[{\"name\":\"tidewell\",\"full_text\":\"\"}]");
}

TEST(ControlTexts, ColourPolybarsTextAndKeepForeignTagsOut) {
  EXPECT_EQ(lineOf(FollowFormat::polybar, sampleValues()), "↓12K ↑3K");
  ResidentValues values = withStatus("down");
  values.plain["MenubarText"] = std::string("%%{A1:x:}");
  EXPECT_EQ(lineOf(FollowFormat::polybar, values), "%{F#e04040}%% {A1:x:}%{F-}");
  EXPECT_EQ(followLine(FollowFormat::polybar, Presence::absent, {}), "");
}

TEST(ControlTexts, CutTheTableAtTheTerminalsEdge) {
  ResidentValues values;
  values.processes = {{1, "firefox", 2'500'000, 12'000, 2'512'000, 1.0}};
  EXPECT_EQ(processTable(values, 0),
            "  DOWNLOAD    UPLOAD  PROGRAM\n  2.5 MB/s   12 KB/s  firefox");
  EXPECT_EQ(processTable(values, 20), "  DOWNLOAD    UPLOA…\n  2.5 MB/s   12 KB/…");
  EXPECT_EQ(processJson(values),
            "[{\"id\":1,\"name\":\"firefox\",\"downloadBytesPerSec\":2500000,"
            "\"uploadBytesPerSec\":12000,\"totalBytes\":2512000,\"share\":1}]");
  EXPECT_EQ(processJson({}), "[]");
}

TEST(ControlTexts, FitIntoColumns) {
  EXPECT_EQ(fitted("abc", 3), "abc");
  EXPECT_EQ(fitted("abcd", 3), "ab…");
  EXPECT_EQ(fitted("abcd", 1), "…");
  EXPECT_EQ(fitted("网络监视", 6), "网络…");
  EXPECT_EQ(fitted("\xff\xff\xff", 2), "\xff…");
  EXPECT_EQ(progressText(12, sampleValues(), 8), "12 s ↓1…");
}

TEST(ControlTexts, ShowTheSpeedTestsResult) {
  const SpeedTestResult result{1000.5, 98.76, 9.0, 1234};
  EXPECT_EQ(speedTestText(result),
            "Download 98.8 Mbit/s\nUpload 9.0 Mbit/s\nResponsiveness 1234 RPM");
  EXPECT_EQ(speedTestJson(result, ""), "{\"time\":1000.5,\"downloadMbps\":98.76,\"uploadMbps\":9,"
                                       "\"responsiveness\":1234}");
  EXPECT_EQ(speedTestJson(result, "no \"server\""), "{\"failure\":\"no \\\"server\\\"\"}");
}

} // namespace
} // namespace tidewell
