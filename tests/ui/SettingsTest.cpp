#include "support/ImageComparison.h"
#include "support/Preferences.h"
#include "ui/components/ScrollPane.h"
#include "ui/components/TextLine.h"
#include "ui/tokens/TWColor.h"

#include <gtest/gtest.h>

#include <QStackedWidget>
#include <QWheelEvent>
#include <QtTest/QTest>

#include <limits>

namespace tidewell::test {
namespace {

using Section = SettingsSection;
class SettingsTest : public testing::Test, protected Preferences {
protected:
  // The texts of the current section, from top to bottom.
  [[nodiscard]] Texts lines() const {
    return linesIn(*view->findChild<QStackedWidget*>()->currentWidget());
  }
  // Selects an entry as the user does.
  void choose(const QString& title, const QString& entry) {
    ChoiceList& choices = list(title);
    choices.setCurrentIndex(choices.findText(entry));
    Q_EMIT choices.activated(choices.currentIndex());
  }
  [[nodiscard]] Texts entries(const QString& title) const {
    Texts texts;
    for (int index = 0; index < list(title).count(); ++index) {
      texts.push_back(list(title).itemText(index).toStdString());
    }
    return texts;
  }
  template <class T> [[nodiscard]] T stored(std::string_view key) const {
    return std::get<T>(store.value(key).value());
  }
};

TEST_F(SettingsTest, BeginsWithTheFirstSection) {
  open();
  entry(Section::data).click();
  open();
  EXPECT_EQ(view->selectedSection(), Section::general);
  EXPECT_EQ(view->windowTitle(), QString::fromUtf8("Tidewell \u2014 Settings"));
}

TEST_F(SettingsTest, ListsItsSections) {
  open();
  EXPECT_EQ(textsOf(view->findChildren<SidebarEntry*>(),
                    [](const SidebarEntry* found) { return found->text().toStdString(); }),
            (Texts{"General", "Alerts", "Display", "Data", "Advanced"}));
  const QWidget* const sidebar = entry(Section::general).parentWidget();
  EXPECT_EQ(sidebar->width(), 160);
  EXPECT_EQ(entry(Section::general).geometry().topLeft(), QPoint(8, 8));
  EXPECT_EQ(entry(Section::general).width(), 144);
  EXPECT_EQ(entry(Section::alerts).y() - entry(Section::general).geometry().bottom(), 3);
}

TEST_F(SettingsTest, ShowsTheSectionThatIsClicked) {
  for (const Section section : allSettingsSections) {
    open(section);
    EXPECT_EQ(view->selectedSection(), section);
    EXPECT_EQ(lines().front(), rawValue(section));
    EXPECT_TRUE(entry(section).isChecked());
  }
}

TEST_F(SettingsTest, SaysWhatEachSettingIsFor) {
  open(Section::general);
  EXPECT_EQ(
      lines(),
      (Texts{"General", "MONITORING", "Launch at Login", "Start Tidewell when you log in",
             "Check for Updates", "Automatically check on launch", "Refresh Interval",
             "How often to sample network speed", "Monitor Interface", "Network interface to track",
             "Track Per-Process", "Monitor bandwidth per application"}));
  open(Section::alerts);
  EXPECT_EQ(lines(), (Texts{"Alerts", "NOTIFICATIONS", "Enable Notifications",
                            "Show alerts for speed drops and outages", "THRESHOLDS",
                            "Slow Speed Warning", "Alert when below this download speed",
                            "High Latency Warning", "Alert when ping exceeds this"}));
  open(Section::display);
  EXPECT_EQ(lines(), (Texts{"Display", "MENUBAR", "Show Upload Speed",
                            "Display upload speed alongside download"}));
  open(Section::data);
  EXPECT_EQ(lines(),
            (Texts{"Data", "RETENTION", "Keep History", "How long to store speed history"}));
  open(Section::advanced);
  EXPECT_EQ(lines(), (Texts{"Advanced", "Advanced settings coming in a future release."}));
}

TEST_F(SettingsTest, HasNoControlsForTheAdvanced) {
  open(Section::advanced);
  const QWidget* const page = view->findChild<QStackedWidget*>()->currentWidget();
  EXPECT_TRUE(page->findChildren<ToggleSwitch*>().isEmpty());
  EXPECT_TRUE(page->findChildren<ChoiceList*>().isEmpty());
}

TEST_F(SettingsTest, ShowsTheDefaultsOfAFreshUser) {
  open();
  EXPECT_FALSE(toggle("Launch at Login").isChecked());
  for (const char* title :
       {"Check for Updates", "Track Per-Process", "Enable Notifications", "Show Upload Speed"}) {
    EXPECT_TRUE(toggle(title).isChecked()) << title;
  }
  EXPECT_EQ(list("Refresh Interval").currentText(), "2 seconds");
  EXPECT_EQ(list("Monitor Interface").currentText(), "All Interfaces");
  EXPECT_EQ(list("Slow Speed Warning").currentText(), "10 Mbps");
  EXPECT_EQ(list("High Latency Warning").currentText(), "100 ms");
  EXPECT_EQ(list("Keep History").currentText(), "30 days");
}

TEST_F(SettingsTest, WritesNothingByBeingLookedAt) {
  for (const Section section : allSettingsSections) {
    open(section);
  }
  scheduler.settle();
  for (const char* key :
       {"launchAtLogin", "checkForUpdates", "refreshInterval", "monitorInterface",
        "trackPerProcess", "slowSpeedThreshold", "highLatencyThreshold", "showNotifications",
        "hasCompletedOnboarding", "dataRetentionDays", "showUploadInMenubar"}) {
    EXPECT_FALSE(store.value(key).has_value()) << key;
  }
  EXPECT_EQ(loginItem.registrations + loginItem.unregistrations, 0);
}

TEST_F(SettingsTest, StoresEachSwitchAtOnce) {
  open();
  for (const auto& [title, key] : std::vector<std::pair<const char*, const char*>>{
           {"Launch at Login", "launchAtLogin"},
           {"Check for Updates", "checkForUpdates"},
           {"Track Per-Process", "trackPerProcess"},
           {"Enable Notifications", "showNotifications"},
           {"Show Upload Speed", "showUploadInMenubar"}}) {
    const bool before = toggle(title).isChecked();
    toggle(title).click();
    EXPECT_EQ(stored<bool>(key), !before) << title;
    EXPECT_EQ(toggle(title).isChecked(), !before) << title;
    toggle(title).click();
    EXPECT_EQ(stored<bool>(key), before) << title;
  }
}

// A setting's entries and their stored values.
struct Options {
  const char* title;
  const char* key;
  std::vector<const char*> labels;
  std::vector<PreferenceValue> values;
};

TEST_F(SettingsTest, OffersFixedChoicesAndStoresThemAtOnce) {
  open(Section::data);
  EXPECT_EQ(list("Keep History").width(), 120);
  using Text = std::string;
  using Days = std::int64_t;
  for (const auto& [title, key, labels, values] :
       std::vector<Options>{{"Refresh Interval",
                             "refreshInterval",
                             {"1 second", "2 seconds", "5 seconds"},
                             {1.0, 2.0, 5.0}},
                            {"Monitor Interface",
                             "monitorInterface",
                             {"All Interfaces", "Wi-Fi (en0)", "Ethernet (en1)"},
                             {Text("all"), Text("en0"), Text("en1")}},
                            {"Slow Speed Warning",
                             "slowSpeedThreshold",
                             {"5 Mbps", "10 Mbps", "25 Mbps", "50 Mbps"},
                             {5.0, 10.0, 25.0, 50.0}},
                            {"High Latency Warning",
                             "highLatencyThreshold",
                             {"50 ms", "100 ms", "200 ms"},
                             {50.0, 100.0, 200.0}},
                            {"Keep History",
                             "dataRetentionDays",
                             {"7 days", "30 days", "90 days", "1 year"},
                             {Days{7}, Days{30}, Days{90}, Days{365}}}}) {
    EXPECT_EQ(entries(title), Texts(labels.begin(), labels.end()));
    for (std::size_t index = 0; index < labels.size(); ++index) {
      choose(title, labels[index]);
      EXPECT_TRUE(store.value(key) == values.at(index)) << title << ": " << labels[index];
    }
  }
}

TEST_F(SettingsTest, KeepsAllValuesWhenSectionsChange) {
  open();
  choose("Refresh Interval", "1 second");
  toggle("Check for Updates").click();
  entry(Section::data).click();
  entry(Section::general).click();
  EXPECT_EQ(list("Refresh Interval").currentText(), "1 second");
  EXPECT_FALSE(toggle("Check for Updates").isChecked());
}

TEST_F(SettingsTest, ShowsWhatOthersWrite) {
  open();
  store.set("refreshInterval", std::int64_t{5}); // as a user may write it
  store.set("showUploadInMenubar", false);
  store.set("dataRetentionDays", std::int64_t{90});
  scheduler.settle();
  EXPECT_EQ(list("Refresh Interval").currentText(), "5 seconds");
  EXPECT_FALSE(toggle("Show Upload Speed").isChecked());
  EXPECT_EQ(list("Keep History").currentText(), "90 days");
  store.clear();
  scheduler.settle();
  EXPECT_EQ(list("Refresh Interval").currentText(), "2 seconds");
  EXPECT_TRUE(toggle("Show Upload Speed").isChecked());
}

TEST_F(SettingsTest, ShowsNoEntryForAValueThatNoneHas) {
  store.set("refreshInterval", 3.0);
  store.set("slowSpeedThreshold", nan);
  open();
  store.set("dataRetentionDays", std::int64_t{31});
  store.set("monitorInterface", std::string("ALL"));
  scheduler.settle();
  for (const char* title :
       {"Refresh Interval", "Slow Speed Warning", "Keep History", "Monitor Interface"}) {
    EXPECT_EQ(list(title).currentIndex(), -1) << title;
    EXPECT_EQ(list(title).currentText(), "") << title;
  }
  EXPECT_EQ(std::get<double>(*store.value("refreshInterval")), 3.0) << "it is only shown";
  choose("Refresh Interval", "2 seconds");
  EXPECT_EQ(stored<double>("refreshInterval"), 2.0);
}

TEST_F(SettingsTest, RegistersTheLoginItemAndStaysOnWhenThatFails) {
  loginItem.error = "no room";
  open();
  testing::internal::CaptureStdout();
  toggle("Launch at Login").click();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Launch at login error: no room\n");
  EXPECT_EQ(loginItem.registrations, 1);
  EXPECT_TRUE(toggle("Launch at Login").isChecked());
  EXPECT_TRUE(stored<bool>("launchAtLogin"));
}

TEST_F(SettingsTest, ChangesNothingWhenTheWheelTurnsOverAList) {
  open();
  ChoiceList& choices = list("Refresh Interval");
  QWheelEvent turn({60.0, 10.0}, choices.mapToGlobal(QPointF(60.0, 10.0)), {}, {0, -120}, {}, {},
                   Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&choices, &turn);
  EXPECT_EQ(choices.currentText(), "2 seconds");
  EXPECT_FALSE(store.value("refreshInterval").has_value());
}

// The last column of the window in which the row shows anything, without the line below it.
int lastColumn(const QWidget& row) {
  const QImage image = picture(*row.window());
  const QRect box(row.mapTo(row.window(), QPoint()), row.size() - QSize(0, 1));
  for (int x = box.right(); x >= box.left(); --x) {
    for (int y = box.top(); y <= box.bottom(); ++y) {
      if (image.pixel(x, y) != TWColor::surface.rgb()) {
        return x;
      }
    }
  }
  return -1;
}

TEST_F(SettingsTest, SwitchesAndListsEndWhereTheLinesEnd) {
  open();
  view->activateWindow();
  const QWidget& choice = *list("Refresh Interval").parentWidget();
  const QWidget& toggled = *toggle("Check for Updates").parentWidget();
  const int end = lastColumn(choice);
  EXPECT_EQ(view->width() - 1 - end, 24);
  EXPECT_EQ(lastColumn(toggled), end);
  const int line = choice.mapTo(view.get(), choice.rect().bottomLeft()).y();
  EXPECT_EQ(picture(*view).pixel(end, line), TWColor::borderSubtle.rgb());
  EXPECT_EQ(picture(*view).pixel(end + 1, line), TWColor::surface.rgb());
  toggle("Check for Updates").setFocus();
  EXPECT_EQ(lastColumn(toggled), end + 3) << "the focus ring would be cut";
}

TEST_F(SettingsTest, HearsNothingOnceItIsGone) {
  open();
  view.reset();
  store.set("refreshInterval", 5.0);
  scheduler.settle();
}

} // namespace
} // namespace tidewell::test
