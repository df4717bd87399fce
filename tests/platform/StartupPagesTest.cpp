#include "platform/linux/process/StartupPages.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace tidewell {
namespace {

/// Resident kilobytes of mapped files, including programs.
long residentFileKilobytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("RssFile:")) {
      return std::stol(line.substr(8));
    }
  }
  return -1;
}

TEST(StartupPages, AreNoLongerCountedOnceReleased) {
  const long before = residentFileKilobytes();
  releaseStartupPages();
  EXPECT_LT(residentFileKilobytes(), before);
}

TEST(StartupPages, LeaveWhatWasWrittenAsItIs) {
  static std::string written = "initial";
  written += " and changed";
  releaseStartupPages();
  EXPECT_EQ(written, "initial and changed");
}

} // namespace
} // namespace tidewell
