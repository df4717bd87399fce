#include "app/ResidentShellCase.h"

#include "app/AttachedFaces.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace tidewell::test {
namespace {

/// A program on the bus that shows the figures, such as an extension of the shell.
class Face {
public:
  Face(EpollLoop& loop, const std::string& address) : m_loop(loop), m_bus(loop, address) {
    runUntil(loop, [this] { return m_bus.connection() != nullptr; });
  }

  /// Calls a method of the resident. Returns whether it succeeded.
  template <class... Arguments>
  bool call(const char* method, const char* types = "", Arguments... arguments) {
    std::optional<bool> result;
    const BusSlot pending = callMethod(
        *m_bus.connection(), {faceInterface, face}, method,
        [&](auto* reply) { result = reply != nullptr; }, types, arguments...);
    return runUntil(m_loop, [&] { return result.has_value(); }) && *result;
  }

private:
  EpollLoop& m_loop;
  SessionBus m_bus;
};

class AttachedFacesTest : public ResidentShellTest {
protected:
  void SetUp() override {
    ResidentShellTest::SetUp();
    if (!IsSkipped()) {
      startBoth();
      settle();
    }
  }
  std::unique_ptr<Face> makeFace() { return std::make_unique<Face>(loop, daemon.address()); }
  std::string status() { return panel->text(item, itemInterface, "Status"); }
  bool isShownAgain() {
    panel->signals.clear();
    return runUntil(loop, [this] { return panel->signals["NewStatus"] > 0; }) &&
           status() == "Active";
  }
};

TEST_F(AttachedFacesTest, HideTheItemUntilTheyDetach) {
  const auto extension = makeFace();
  panel->signals.clear();
  EXPECT_TRUE(extension->call("AttachFace", "s", "test"));
  EXPECT_EQ(status(), "Passive");
  EXPECT_EQ(panel->signals["NewStatus"], 1);
  EXPECT_TRUE(extension->call("DetachFace"));
  EXPECT_EQ(status(), "Active");
  EXPECT_EQ(panel->signals["NewStatus"], 2);
}

TEST_F(AttachedFacesTest, AreDetachedWhenTheyLeaveTheBus) {
  auto extension = makeFace();
  EXPECT_TRUE(extension->call("AttachFace", "s", "test"));
  settle();
  extension.reset();
  EXPECT_TRUE(isShownAgain());
}

TEST_F(AttachedFacesTest, AttachOnceHoweverOftenTheyAsk) {
  const auto extension = makeFace();
  panel->signals.clear();
  for (int time = 0; time < 100; ++time) {
    EXPECT_TRUE(extension->call("AttachFace", "s", "test"));
  }
  EXPECT_EQ(status(), "Passive");
  EXPECT_EQ(panel->signals["NewStatus"], 1);
  EXPECT_TRUE(extension->call("DetachFace"));
  EXPECT_EQ(status(), "Active");
}

TEST_F(AttachedFacesTest, HideTheItemUntilTheLastOneHasGone) {
  auto one = makeFace();
  auto two = makeFace();
  EXPECT_TRUE(one->call("AttachFace", "s", "one"));
  EXPECT_TRUE(two->call("AttachFace", "s", "two"));
  one.reset();
  settle();
  EXPECT_EQ(status(), "Passive");
  settle();
  two.reset();
  EXPECT_TRUE(isShownAgain());
}

TEST_F(AttachedFacesTest, MayDetachWithoutBeingAttached) {
  const auto extension = makeFace();
  EXPECT_TRUE(extension->call("DetachFace"));
  EXPECT_EQ(status(), "Active");
}

TEST_F(AttachedFacesTest, AreRefusedWhenTheyAreTooMany) {
  std::vector<std::unique_ptr<Face>> faces;
  for (std::size_t count = 0; count < AttachedFaces::most; ++count) {
    faces.push_back(makeFace());
    EXPECT_TRUE(faces.back()->call("AttachFace", "s", "test"));
  }
  const auto late = makeFace();
  EXPECT_FALSE(late->call("AttachFace", "s", "late"));
  faces.pop_back();
  settle();
  EXPECT_TRUE(late->call("AttachFace", "s", "late"));
  late->call("DetachFace");
  EXPECT_FALSE(
      late->call("AttachFace", "s", std::string(AttachedFaces::longestKind + 1, 'x').c_str()));
  EXPECT_TRUE(late->call("AttachFace", "s", std::string(AttachedFaces::longestKind, 'x').c_str()));
}

TEST_F(AttachedFacesTest, KeepTheItemQuiet) {
  const auto extension = makeFace();
  call(menu, menuInterface, "GetLayout", "iias", 0, -1, 0);
  EXPECT_TRUE(extension->call("AttachFace", "s", "test"));
  settle();
  panel->signals.clear();
  publish(5'000'000);
  settle();
  EXPECT_EQ(panel->signals,
            (std::map<std::string, int>{{"PropertiesChanged", 1}, {"SampleAdded", 1}}));
  EXPECT_EQ(panel->text(face, faceInterface, "MenubarText"), "↓5.0M ↑0K");
  EXPECT_TRUE(extension->call("DetachFace"));
  settle();
  EXPECT_EQ(panel->signals["NewIcon"], 1) << "the item shows the new figures";
  EXPECT_EQ(panel->signals["ItemsPropertiesUpdated"], 1);
}

TEST_F(AttachedFacesTest, AreForgottenWithTheirBus) {
  const auto extension = makeFace();
  EXPECT_TRUE(extension->call("AttachFace", "s", "test"));
  daemon.end();
  ASSERT_TRUE(runUntil(loop, [this] { return bus.connection() == nullptr; }));
  panel.reset();
  daemon.start();
  startPanel();
  waitForItem();
  EXPECT_EQ(status(), "Active");
}

TEST_F(AttachedFacesTest, AreListed) {
  const auto extension = makeFace();
  EXPECT_TRUE(extension->call("AttachFace", "s", "shell"));
  const auto reply = panel->get(face, faceInterface, "Faces", "as");
  const char* kind = "";
  ASSERT_TRUE(reply && sd_bus_message_enter_container(reply.get(), 'a', "s") > 0);
  EXPECT_GT(sd_bus_message_read(reply.get(), "s", &kind), 0);
  EXPECT_STREQ(kind, "shell");
}

TEST_F(AttachedFacesTest, OpenThePanelAtAPoint) {
  const auto extension = makeFace();
  EXPECT_TRUE(extension->call("OpenPanelAt", "ii", 1200, -5));
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_EQ(requests[0], (WindowRequest{WindowRequest::Kind::panel, {}, {{1200, -5}}, {}}));
  EXPECT_FALSE(extension->call("OpenPanelAt", "s", "here"));
  EXPECT_EQ(requests.size(), 1U);
}

} // namespace
} // namespace tidewell::test
