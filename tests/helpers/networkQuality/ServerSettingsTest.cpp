#include "helpers/networkQuality/ServerSettings.h"

#include <gtest/gtest.h>

#include <string>

namespace tidewell::test {
namespace {

TEST(ServerSettings, HoldTheAddressInTheFirstLineThatSaysSomething) {
  EXPECT_EQ(addressInSettings("https://a.example/config"), "https://a.example/config");
  EXPECT_EQ(addressInSettings("# of our provider\r\n\n \t https://a.example/ \r\nhttps://b\n"),
            "https://a.example/");
}

TEST(ServerSettings, MayHoldNothing) {
  EXPECT_EQ(addressInSettings(""), "");
  EXPECT_EQ(addressInSettings("\n\n# https://a.example\n   \t\n"), "");
}

TEST(ServerSettings, MayBeAnyBytes) {
  const std::string bytes("\0\xff\n", 3);
  EXPECT_EQ(addressInSettings(bytes), bytes.substr(0, 2));
}

} // namespace
} // namespace tidewell::test
