#include "ui/settings/UnsavedSettings.h"
#include "support/Preferences.h"
#include "ui/settings/UnsavedNotice.h"

#include <gtest/gtest.h>

#include <QStackedWidget>

namespace tidewell::test {
namespace {

// A disk that refuses what the user changes.
class UnsavedSettingsTest : public testing::Test, protected Preferences {
protected:
  UnsavedSettingsTest() {
    open();
    refuse(std::errc::read_only_file_system);
  }

  void refuse(std::errc reason) { store.refusal = std::make_error_code(reason); }
  void allow() { store.refusal = {}; }
  void wait() {
    time.advance(UnsavedSettings::retrySpan);
    scheduler.settle();
  }
  void choose(const QString& title, const QString& entry) {
    ChoiceList& choices = list(title);
    choices.setCurrentIndex(choices.findText(entry));
    Q_EMIT choices.activated(choices.currentIndex());
    scheduler.settle();
  }
  // The line at the window's foot, empty if it is hidden.
  [[nodiscard]] std::string notice() const {
    const auto& line = *view->findChild<UnsavedNotice*>();
    return line.isVisible() ? line.accessibleName().toStdString() : "";
  }
};

TEST_F(UnsavedSettingsTest, ShowWhatIsInForceAndWhy) {
  EXPECT_EQ(notice(), "");
  toggle("Track Per-Process").click();
  EXPECT_TRUE(toggle("Track Per-Process").isChecked());
  EXPECT_EQ(notice(), "Not saved: Read-only file system. Trying again.");
  refuse(std::errc::no_space_on_device);
  choose("Refresh Interval", "5 seconds");
  EXPECT_EQ(list("Refresh Interval").currentText(), "2 seconds");
  EXPECT_EQ(notice(), "Not saved: No space left on device. Trying again.");
  EXPECT_FALSE(store.value("trackPerProcess") || store.value("refreshInterval"));
}

TEST_F(UnsavedSettingsTest, AreTriedAgainUntilTheyAreStored) {
  toggle("Track Per-Process").click();
  choose("Refresh Interval", "5 seconds");
  for (int attempt = 0; attempt < 100; ++attempt) {
    wait();
  }
  EXPECT_NE(notice(), "");
  EXPECT_TRUE(toggle("Track Per-Process").isChecked());
  allow();
  wait();
  EXPECT_EQ(notice(), "");
  EXPECT_FALSE(toggle("Track Per-Process").isChecked());
  EXPECT_EQ(list("Refresh Interval").currentText(), "5 seconds");
  EXPECT_EQ(store.value("trackPerProcess"), PreferenceValue(false));
}

TEST_F(UnsavedSettingsTest, AreStoredWithTheNextChange) {
  toggle("Track Per-Process").click();
  allow();
  toggle("Check for Updates").click();
  scheduler.settle();
  EXPECT_FALSE(toggle("Track Per-Process").isChecked());
  EXPECT_FALSE(toggle("Check for Updates").isChecked());
  EXPECT_EQ(notice(), "");
}

TEST_F(UnsavedSettingsTest, GiveWayToWhatTheUserChoosesNext) {
  choose("Refresh Interval", "5 seconds");
  choose("Refresh Interval", "1 second");
  allow();
  wait();
  EXPECT_EQ(store.value("refreshInterval"), PreferenceValue(1.0));

  refuse(std::errc::read_only_file_system);
  choose("Refresh Interval", "5 seconds");
  choose("Refresh Interval", "1 second");
  EXPECT_EQ(notice(), "") << "that is in force";
  allow();
  wait();
  EXPECT_EQ(store.value("refreshInterval"), PreferenceValue(1.0));
}

TEST_F(UnsavedSettingsTest, GiveWayToWhatAnotherProgramWrites) {
  choose("Refresh Interval", "5 seconds");
  allow();
  store.set("refreshInterval", 1.0);
  scheduler.settle();
  EXPECT_EQ(notice(), "");
  wait();
  EXPECT_EQ(store.value("refreshInterval"), PreferenceValue(1.0));
}

TEST_F(UnsavedSettingsTest, AreGivenUpWithTheWindow) {
  toggle("Track Per-Process").click();
  view.reset();
  allow();
  wait();
  EXPECT_FALSE(store.value("trackPerProcess"));
  open();
  EXPECT_EQ(notice(), "");
}

TEST_F(UnsavedSettingsTest, RegisterTheLoginItemOnceItIsStored) {
  toggle("Launch at Login").click();
  wait();
  EXPECT_EQ(loginItem.registrations + loginItem.unregistrations, 0);
  allow();
  wait();
  EXPECT_EQ(loginItem.registrations, 1);
  EXPECT_TRUE(toggle("Launch at Login").isChecked());
}

TEST_F(UnsavedSettingsTest, LeaveTheirLineNoSpaceOnceTheyAreStored) {
  const QWidget& pages = *view->findChild<QStackedWidget*>();
  const int before = pages.height();
  toggle("Track Per-Process").click();
  Panel::settle();
  EXPECT_LT(pages.height(), before);
  allow();
  wait();
  Panel::settle();
  EXPECT_EQ(pages.height(), before);
}

} // namespace
} // namespace tidewell::test
