#include "app/ResidentShellCase.h"

#include <memory>
#include <string>

namespace tidewell::test {
namespace {

constexpr const char* labelIcon = "network-transmit-receive";

/// A program that reads the item on a connection of its own.
class Reader {
public:
  Reader(EpollLoop& loop, const std::string& address, std::string itemName)
      : m_loop(loop), m_itemName(std::move(itemName)), m_bus(loop, address) {
    runUntil(loop, [this] { return m_bus.connection() != nullptr; });
  }

  void get(const char* property) { call("Get", "ss", itemInterface, property); }
  void getAll() { call("GetAll", "s", itemInterface); }

private:
  template <class... Arguments>
  void call(const char* method, const char* types, Arguments... arguments) {
    bool isAnswered = false;
    const auto answered = [&](sd_bus_message* reply) { isAnswered = reply != nullptr; };
    const BusSlot pending = withHandler(answered, [&](auto** slot, auto callback, void* own) {
      return sd_bus_call_method_async(m_bus.connection(), slot, m_itemName.c_str(), item,
                                      propertiesInterface, method, callback, own, types,
                                      arguments...);
    });
    EXPECT_TRUE(runUntil(m_loop, [&] { return isAnswered; }));
  }

  EpollLoop& m_loop;
  std::string m_itemName;
  SessionBus m_bus;
};

/// A watcher that shows nothing. The tests' process then gets the name of a host.
class ItemReadersTest : public ResidentShellTest {
protected:
  void startUnder(const char* watcher) {
    hostProcess(watcher);
    startBoth();
    // So that the panel's own connection is known by this name, which is none of a host.
    EXPECT_GE(pictures(), 0);
    settle();
    panel->signals.clear();
  }
  std::unique_ptr<Reader> reader(const char* process) {
    hostProcess(process);
    return std::make_unique<Reader>(loop, daemon.address(), panel->items.back());
  }
  std::string iconName() {
    settle();
    return panel->text(item, itemInterface, "IconName");
  }
  int pictures() {
    settle();
    int count = 0;
    const auto reply = panel->get(item, itemInterface, "IconPixmap", "a(iiay)");
    if (!reply || sd_bus_message_enter_container(reply.get(), 'a', "(iiay)") < 0) {
      return -1;
    }
    while (sd_bus_message_skip(reply.get(), "(iiay)") > 0) {
      ++count;
    }
    return count;
  }
};

TEST_F(ItemReadersTest, GiveAKnownHostWhatItShowsUnderAWatcherOfItsOwn) {
  startUnder("kded6");
  EXPECT_EQ(pictures(), 2) << "nobody has read it yet";
  const auto bar = reader("waybar");
  bar->getAll();
  EXPECT_EQ(pictures(), 1);
  EXPECT_GE(panel->signals["NewIcon"], 1);
}

TEST_F(ItemReadersTest, GiveAnUnknownHostThatReadsTheLabelAloneTheLabel) {
  startUnder("some-watcher");
  const auto bar = reader("some-bar");
  bar->get("IconName");
  EXPECT_EQ(iconName(), "");
  bar->get("XAyatanaLabel");
  EXPECT_EQ(iconName(), labelIcon);
  settle();
  EXPECT_EQ(panel->signals["XAyatanaNewLabel"], 1);
}

TEST_F(ItemReadersTest, GiveTheTileToAnUnknownHostThatReadsEverythingOrNothing) {
  startUnder("some-watcher");
  const auto bar = reader("some-bar");
  EXPECT_EQ(pictures(), 2);
  bar->getAll();
  EXPECT_EQ(pictures(), 2);
  bar->get("XAyatanaLabel");
  bar->get("IconPixmap");
  EXPECT_EQ(pictures(), 2);
}

TEST_F(ItemReadersTest, GiveTheTileToHostsThatDiffer) {
  startUnder("kded6");
  const auto wide = reader("waybar");
  wide->getAll();
  settle();
  auto square = reader("lxqt-panel");
  square->getAll();
  EXPECT_EQ(pictures(), 2);
  square.reset();
  EXPECT_EQ(pictures(), 1) << "the other one is alone again";
}

TEST_F(ItemReadersTest, ForgetAHostThatDiesBeforeOrAfterTheBusHasNamedIt) {
  startUnder("some-watcher");
  for (int round = 0; round < 3 * static_cast<int>(ItemReaders::most); ++round) {
    const auto bar = reader("waybar");
    bar->getAll();
    if (round % 2 == 0) {
      settle();
    }
  }
  EXPECT_EQ(pictures(), 2);
  const auto bar = reader("waybar");
  bar->getAll();
  EXPECT_EQ(pictures(), 1) << "there is room for it";
}

TEST_F(ItemReadersTest, AreNotAskedWhereTheWatcherIsKnown) {
  startUnder("gnome-shell");
  const auto bar = reader("waybar");
  bar->getAll();
  EXPECT_EQ(iconName(), labelIcon);
}

TEST_F(ItemReadersTest, AreForgottenWithTheirWatcher) {
  startUnder("kded6");
  const auto bar = reader("waybar");
  bar->getAll();
  EXPECT_EQ(pictures(), 1);
  hostProcess("some-watcher");
  panel.reset();
  startPanel();
  waitForItem();
  EXPECT_EQ(pictures(), 2);
}

} // namespace
} // namespace tidewell::test
