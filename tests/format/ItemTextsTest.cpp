#include "format/MenubarLabel.h"

#include "base/Utf8.h"
#include "connectivity/MonitorState.h"
#include "platform/PreferencesStore.h"
#include "sampling/SamplerState.h"
#include "settings/AppSettings.h"
#include "support/FakeLoginItem.h"
#include "support/FakePreferencesStore.h"
#include "support/VirtualScheduler.h"
#include "tile/TextTile.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tidewell::test {
namespace {

class ItemTextsTest : public testing::Test {
protected:
  VirtualScheduler scheduler;
  FakePreferencesStore preferences{scheduler.main()};
  FakeLoginItem loginItem;
  AppSettings settings{preferences, loginItem};
  SamplerState sampler;
  MonitorState monitor;

  ItemTexts texts() const { return itemTexts(sampler, monitor, settings); }
  void setRates(std::int64_t download, std::int64_t upload) {
    sampler.currentDownloadBytesPerSec.set(download);
    sampler.currentUploadBytesPerSec.set(upload);
  }
};

/// Characters, not bytes.
std::ptrdiff_t lengthOf(const std::string& text) {
  return std::ranges::count_if(text, [](char byte) { return (byte & 0xC0) != 0x80; });
}

TEST_F(ItemTextsTest, SayTheRatesInTheMenuBar) {
  setRates(12'345, 3'210);
  EXPECT_EQ(texts().label, "↓12K ↑3K");
  settings.setShowUploadInMenubar(false);
  EXPECT_EQ(texts().label, "↓12K");
}

TEST_F(ItemTextsTest, SayThatTheMachineIsOfflineWhateverTheRatesAndSettings) {
  setRates(12'345, 3'210);
  monitor.isConnected.set(false);
  EXPECT_EQ(texts().label, "↓-- ↑--");
  settings.setShowUploadInMenubar(false);
  EXPECT_EQ(texts().label, "↓-- ↑--");
}

TEST_F(ItemTextsTest, SayStatusRatesAndLatency) {
  setRates(1'234'567, 500'000);
  sampler.latencyMs.set(12.34);
  EXPECT_EQ(texts(), (ItemTexts{"↓1.2M ↑500K", "Excellent", "Download 1.2 MB/s", "Upload 500 KB/s",
                                "Latency 12.3 ms"}));
  sampler.latencyMs.set(60.0);
  EXPECT_EQ(texts().status, "Good");
  sampler.latencyMs.set(0.0);
  sampler.packetLossPercent.set(10.0);
  EXPECT_EQ(texts().status, "Degraded");
  EXPECT_EQ(texts().latency, "Latency —");
  sampler.isConnected = false;
  EXPECT_EQ(texts().status, "Down");
}

TEST_F(ItemTextsTest, NeverOutgrowTheGuideUpToTenGigabytes) {
  for (std::int64_t rate = 1; rate <= 10'000'000'000; rate += 1 + rate / 3) {
    for (const std::int64_t exact : {rate, 10'000'000'000 - rate}) {
      setRates(exact, exact);
      settings.setShowUploadInMenubar(true);
      EXPECT_LE(lengthOf(texts().label), lengthOf(labelGuide)) << texts().label;
      settings.setShowUploadInMenubar(false);
      EXPECT_LE(lengthOf(texts().label), lengthOf(labelGuideWithoutUpload));
    }
  }
}

} // namespace
} // namespace tidewell::test
