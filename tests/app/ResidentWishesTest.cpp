#include "app/ResidentShellCase.h"
#include "bus/ResidentInterface.h"
#include "support/Language.h"

namespace tidewell::test {
namespace {

/// What the user asks for through the item, its menu and the bus.
class ResidentWishesTest : public ResidentShellTest {};

TEST_F(ResidentWishesTest, ChangesTheMenuOnlyForWhoHasLookedAtIt) {
  startBoth();
  settle();
  publish(12'345);
  settle();
  EXPECT_EQ(panel->signals["ItemsPropertiesUpdated"], 0);
  ASSERT_TRUE(call(menu, menuInterface, "GetLayout", "iias", 0, -1, 0));
  publish(99'999);
  settle();
  EXPECT_EQ(panel->signals["ItemsPropertiesUpdated"], 1);
  EXPECT_EQ(panel->signals["LayoutUpdated"], 0);
}

TEST_F(ResidentWishesTest, OffersTextsCommandsAndSeparators) {
  startBoth();
  std::string kinds;
  for (int row = 1; row <= 12; ++row) {
    int isEnabled = 0;
    const char* type = "";
    sd_bus_message_read(call(menu, menuInterface, "GetProperty", "is", row, "enabled").get(), "v",
                        "b", &isEnabled);
    const auto reply = call(menu, menuInterface, "GetProperty", "is", row, "type");
    sd_bus_message_read(reply.get(), "v", "s", &type);
    kinds += std::string(type) == "separator" ? '-' : isEnabled != 0 ? 'c' : 't';
  }
  EXPECT_EQ(kinds, "tttt-ccccc-c");
  const char* labels[] = {"Excellent", "Download 0 KB/s", "Upload 0 KB/s", "Latency —"};
  for (int row = 1; row <= 4; ++row) {
    EXPECT_EQ(rowOf(labels[row - 1]), row);
  }
}

TEST_F(ResidentWishesTest, AnswersNonsenseFromTheMenusHostWithErrors) {
  startBoth();
  for (const int id : {-1, 99, 2'000'000'000}) {
    EXPECT_FALSE(call(menu, menuInterface, "GetLayout", "iias", id, -1, 0)) << id;
    EXPECT_FALSE(call(menu, menuInterface, "GetProperty", "is", id, "label")) << id;
    EXPECT_TRUE(call(menu, menuInterface, "Event", "isvu", id, "clicked", "i", 0, 0)) << id;
  }
  EXPECT_FALSE(call(menu, menuInterface, "GetProperty", "is", 1, "nonsense"));
  EXPECT_FALSE(panel->call(menu, menuInterface, "Nonsense"));
  EXPECT_FALSE(call(item, itemInterface, "Activate", "s", "left"));
  EXPECT_EQ(quits, 0);
}

TEST_F(ResidentWishesTest, AnswersAGroupOfEventsWithTheUnknownOnes) {
  startBoth();
  const auto reply = call(menu, menuInterface, "EventGroup", "a(isvu)", 2, 77, "clicked", "i", 0, 0,
                          1, "hovered", "i", 0, 0);
  ASSERT_TRUE(reply);
  ASSERT_GT(sd_bus_message_enter_container(reply.get(), 'a', "i"), 0);
  int unknown = 0;
  EXPECT_GT(sd_bus_message_read(reply.get(), "i", &unknown), 0);
  EXPECT_EQ(unknown, 77);
  EXPECT_EQ(sd_bus_message_read(reply.get(), "i", &unknown), 0);
}

TEST_F(ResidentWishesTest, QuitsFromItsMenuAndFromTheBus) {
  startBoth();
  choose("Quit", "hovered");
  EXPECT_EQ(quits, 0);
  choose("Quit");
  EXPECT_EQ(quits, 1);
  ASSERT_TRUE(panel->call(face, faceInterface, "Quit"));
  EXPECT_EQ(quits, 2);
}

TEST_F(ResidentWishesTest, RunsASpeedTestOnRequest) {
  startBoth();
  ASSERT_TRUE(panel->call(face, faceInterface, "RunSpeedTest"));
  EXPECT_EQ(speedTests, 1);
  choose("Speed Test");
  EXPECT_EQ(speedTests, 2);
}

TEST_F(ResidentWishesTest, SaysInItsMenuThatASpeedTestRuns) {
  startBoth();
  speedTest.isRunning.set(true);
  settle();
  EXPECT_GT(rowOf("Testing..."), 0);
  speedTest.isRunning.set(false);
  settle();
  EXPECT_GT(rowOf("Speed Test"), 0);
}

TEST_F(ResidentWishesTest, AsksForThePanelWhereTheItemWasActivatedWithTheTokenOfThatClickAlone) {
  startBoth();
  const auto activate = [&](int x, int y) {
    ASSERT_TRUE(call(item, itemInterface, "Activate", "ii", x, y));
  };
  ASSERT_TRUE(call(item, itemInterface, "ProvideXdgActivationToken", "s", "t1"));
  activate(812, 16);
  activate(-5, 2000);
  using Request = WindowRequest;
  EXPECT_EQ(requests,
            (std::vector<Request>{{Request::Kind::panel, "t1", Request::Point{812, 16}, {}},
                                  {Request::Kind::panel, "", Request::Point{-5, 2000}, {}}}));
}

TEST_F(ResidentWishesTest, AnswersNoMoreMenuRowsThanThereAreHoweverManyAreAskedFor) {
  startBoth();
  const std::vector<std::int32_t> ids(100'000, 1);
  const auto reply =
      panel->call(menu, menuInterface, "GetGroupProperties", [&](sd_bus_message& call) {
        sd_bus_message_append_array(&call, 'i', ids.data(), ids.size() * sizeof(std::int32_t));
        sd_bus_message_append(&call, "as", 0);
      });
  ASSERT_TRUE(reply);
  int rows = 0;
  ASSERT_GT(sd_bus_message_enter_container(reply.get(), 'a', "(ia{sv})"), 0);
  while (sd_bus_message_skip(reply.get(), "(ia{sv})") > 0) {
    ++rows;
  }
  EXPECT_GE(rows, 1);
  EXPECT_LE(rows, 13);
}

TEST_F(ResidentWishesTest, KeepsNoTokenThatIsTooLongForOne) {
  startBoth();
  for (const std::size_t size : {255U, 256U, 1U << 20U}) {
    const std::string token(size, 't');
    ASSERT_TRUE(call(item, itemInterface, "ProvideXdgActivationToken", "s", token.c_str()));
    ASSERT_TRUE(call(item, itemInterface, "Activate", "ii", 1, 2));
  }
  ASSERT_EQ(requests.size(), 3U);
  EXPECT_EQ(requests[0].token, std::string(255, 't'));
  EXPECT_EQ(requests[1].token, "");
  EXPECT_EQ(requests[2].token, "");
}

TEST_F(ResidentWishesTest, AsksForWindowsFromItsMenuAndFromTheBus) {
  startBoth();
  for (const char* entry : {"Open", "Details", "Settings"}) {
    choose(entry);
  }
  for (const char* method : {"OpenPanel", "OpenDetail", "OpenSettings"}) {
    ASSERT_TRUE(panel->call(face, faceInterface, method));
  }
  using Kind = WindowRequest::Kind;
  std::vector<Kind> kinds;
  for (const WindowRequest& request : requests) {
    kinds.push_back(request.kind);
  }
  EXPECT_EQ(kinds, (std::vector<Kind>{Kind::panel, Kind::detail, Kind::settings, Kind::panel,
                                      Kind::detail, Kind::settings}));
}

TEST_F(ResidentWishesTest, CopiesThePublicAddressAndTheLocalOneWhileThatIsNotKnown) {
  startBoth();
  ConnectionInfo info;
  info.ipAddress = "192.168.1.20";
  monitor.connectionInfo.set(info);
  choose("Copy IP");
  info.publicIP = "203.0.113.7";
  monitor.connectionInfo.set(info);
  choose("Copy IP");
  ASSERT_EQ(requests.size(), 2U);
  EXPECT_EQ(requests[0].text, "192.168.1.20");
  EXPECT_EQ(requests[1].text, "203.0.113.7");
}

TEST_F(ResidentWishesTest, SpeaksTheUsersLanguageToTheUserAndEnglishToPrograms) {
  const Language language(TIDEWELL_CATALOGUES, "de");
  startBoth();
  const char* labels[] = {"Ausgezeichnet", "Download 0 KB/s", "Upload 0 KB/s", "Latenz —"};
  for (int row = 1; row <= 4; ++row) {
    EXPECT_EQ(rowOf(labels[row - 1]), row);
  }
  EXPECT_EQ(rowOf("Beenden"), 12);
  choose("Speedtest");
  EXPECT_EQ(speedTests, 1);
  const auto reply = call(residentInterface::path, "org.freedesktop.DBus.Properties", "Get", "ss",
                          residentInterface::name, "Status");
  const char* status = "";
  ASSERT_TRUE(reply);
  sd_bus_message_read(reply.get(), "v", "s", &status);
  EXPECT_EQ(std::string(status), "excellent");
}

TEST_F(ResidentWishesTest, NamesTheRowThatCopiesForProgramsThatCopyThemselves) {
  startBoth();
  constexpr const char* action = "x-tidewell-action";
  const auto reply = call(menu, menuInterface, "GetProperty", "is", rowOf("Copy IP"), action);
  const char* name = "";
  ASSERT_TRUE(reply);
  sd_bus_message_read(reply.get(), "v", "s", &name);
  EXPECT_EQ(std::string(name), "copy");
  EXPECT_FALSE(call(menu, menuInterface, "GetProperty", "is", rowOf("Open"), action));
  // The shell's extension reads all properties at once.
  const auto layout = call(menu, menuInterface, "GetLayout", "iias", rowOf("Copy IP"), 0, 0);
  ASSERT_TRUE(layout);
  ASSERT_GE(sd_bus_message_skip(layout.get(), "u"), 0);
  int id = 0;
  const char* values[] = {"", "", "", ""};
  ASSERT_GT(sd_bus_message_enter_container(layout.get(), 'r', "ia{sv}av"), 0);
  ASSERT_GT(sd_bus_message_read(layout.get(), "ia{sv}", &id, 2, &values[0], "s", &values[1],
                                &values[2], "s", &values[3]),
            0);
  EXPECT_EQ(std::string(values[2]), action);
  EXPECT_EQ(std::string(values[3]), "copy");
}

} // namespace
} // namespace tidewell::test
