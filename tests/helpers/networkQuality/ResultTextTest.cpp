#include "helpers/networkQuality/ResultText.h"

#include "speedtest/NetworkQualityOutput.h"

#include <gtest/gtest.h>

#include <clocale>
#include <optional>
#include <string>

namespace tidewell::test {
namespace {

LineResult line(double megabits, double roundTrip) {
  return {megabits * 1e6 / 8.0, RoundTripMeans{{roundTrip, roundTrip, roundTrip}, roundTrip},
          Confidence::high, 8};
}

SpeedTestResult read(const TestResult& result) {
  return parseNetworkQualityOutput(resultText(result), 5.0);
}

std::string firstLines(const TestResult& result) {
  const std::string text = resultText(result);
  return text.substr(0, text.find("Download:"));
}

TEST(ResultText, HasOneLineForEachNumber) {
  EXPECT_EQ(firstLines({line(94.8125, 0.06), line(19.1, 0.05)}),
            "Downlink capacity: 94.812 Mbps\n"
            "Uplink capacity: 19.100 Mbps\n"
            "Responsiveness: High (1000 RPM)\n");
}

TEST(ResultText, IsReadAsItWasMeant) {
  EXPECT_EQ(read({line(94.812, 0.06), line(1955.5, 0.02)}),
            (SpeedTestResult{5.0, 94.812, 1955.5, 1000}));
  EXPECT_EQ(read({line(0.957, 3.0), line(0.001, 3.0)}), (SpeedTestResult{5.0, 0.957, 0.001, 20}));
}

TEST(ResultText, RatesAsItPrints) {
  for (const auto& [perMinute, words] :
       std::initializer_list<std::pair<double, const char*>>{{999.6, "High (1000 RPM)"},
                                                             {999.4, "Medium (999 RPM)"},
                                                             {200.0, "Medium (200 RPM)"},
                                                             {199.0, "Low (199 RPM)"}}) {
    EXPECT_NE(resultText({line(1, 60.0 / perMinute), line(1, 0.01)}).find(words),
              std::string::npos);
    EXPECT_NE(resultText({line(1, 0.01), line(1, 60.0 / perMinute)}).find(words),
              std::string::npos);
  }
}

TEST(ResultText, SaysNothingOfWhatWasNotMeasured) {
  EXPECT_EQ(resultText({}), "");
  EXPECT_EQ(read({line(94.812, 0.06), std::nullopt}), (SpeedTestResult{5.0, 94.812, 0.0, 1000}));
  EXPECT_EQ(read({std::nullopt, std::nullopt}), (SpeedTestResult{5.0, 0.0, 0.0, 0}));
}

TEST(ResultText, HasNoResponsivenessWhenADirectionLacksIt) {
  LineResult silent = line(50.0, 0.06);
  silent.roundTrips.reset();
  EXPECT_EQ(read({line(94.812, 0.06), silent}), (SpeedTestResult{5.0, 94.812, 50.0, 0}));
}

TEST(ResultText, TellsHowItCameAbout) {
  LineResult doubtful = line(20.0, 0.0305);
  doubtful.confidence = Confidence::medium;
  const std::string text = resultText({line(94.812, 0.06), doubtful});
  EXPECT_NE(text.find("Download: 8 flows, confidence high, ms: TCP 60.00, TLS 60.00, HTTP 60.00, "
                      "loaded 60.00\n"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("Upload: 8 flows, confidence medium, ms: TCP 30.50"), std::string::npos);
}

TEST(ResultText, HasAReasonThatTheResidentReadsAndTakesForNoResult) {
  const std::string text = failureText("the server refuses: status 503");
  EXPECT_EQ(networkQualityFailure(text), "the server refuses: status 503");
  EXPECT_EQ(parseNetworkQualityOutput(text, 5.0), (SpeedTestResult{5.0, 0.0, 0.0, 0}));
}

TEST(ResultText, IsTheSameInEveryLocale) {
  const TestResult result{line(94.812, 0.06), line(1955.5, 0.02)};
  const std::string plain = resultText(result);
  for (const char* name : {"de_DE.UTF-8", "de_DE", "C.UTF-8"}) {
    std::setlocale(LC_ALL, name);
    EXPECT_EQ(resultText(result), plain) << name;
  }
  std::setlocale(LC_ALL, "C");
}

} // namespace
} // namespace tidewell::test
