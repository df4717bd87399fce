#include "support/TemporaryDirectory.h"
#include "ui/application/PanelController.h"
#include "ui/application/SingleWindow.h"
#include "ui/mirror/ResidentMirror.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>

#include <algorithm>
#include <filesystem>
#include <string>

namespace tidewell::test {
namespace {

class PanelActivation : public testing::Test {
protected:
  ResidentState state;
  PanelController panel{state, PanelActions{[] {}, [] {}, [] {}, [] {}, [](const auto&) {}}};
  QSignalSpy opened{&panel, &PanelController::opened};
  QSignalSpy closed{&panel, &PanelController::closed};
};

TEST_F(PanelActivation, TogglesThePanel) {
  panel.toggle(QPoint(700, 10));
  EXPECT_TRUE(panel.isOpen());
  panel.toggle(QPoint(700, 10));
  EXPECT_FALSE(panel.isOpen());
  panel.toggle(std::nullopt);
  EXPECT_TRUE(panel.isOpen());
  EXPECT_EQ(opened.count(), 2);
  EXPECT_EQ(closed.count(), 1);
}

TEST_F(PanelActivation, OpensAnOpenPanelOnce) {
  panel.open(std::nullopt);
  panel.open(std::nullopt);
  EXPECT_EQ(opened.count(), 1);
  panel.close();
  panel.close();
  EXPECT_EQ(closed.count(), 1);
}

TEST_F(PanelActivation, GivesNoButtonTheFocusBeforeTheUserDoes) {
  panel.open(std::nullopt);
  const auto windows = QApplication::topLevelWidgets();
  const auto host = std::ranges::find_if(
      windows, [](const QWidget* window) { return qobject_cast<const PanelWindow*>(window); });
  ASSERT_NE(host, windows.end());
  EXPECT_TRUE(QTest::qWaitFor([&] { return (*host)->focusWidget() != nullptr; }));
  EXPECT_EQ(qobject_cast<QAbstractButton*>((*host)->focusWidget()), nullptr);
}

TEST(SingleWindow, IsMadeOnceAndMadeAnewAfterItWasClosed) {
  int made = 0;
  QWidget* newest = nullptr;
  SingleWindow window([&] {
    ++made;
    newest = new QWidget;
    return newest;
  });
  QSignalSpy closed(&window, &SingleWindow::closed);
  window.show({});
  window.show("token");
  EXPECT_EQ(made, 1);
  EXPECT_TRUE(window.isOpen());
  EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "token");
  newest->close();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !window.isOpen(); }, 10'000));
  EXPECT_EQ(closed.count(), 1);
  window.show({});
  EXPECT_EQ(made, 2);
}

TEST(SingleWindow, ComesBackFromTheTaskbar) {
  QWidget* made = nullptr;
  SingleWindow window([&] { return made = new QWidget; });
  window.show({});
  made->showMinimized();
  window.show({});
  EXPECT_FALSE(made->isMinimized());
}

namespace fs = std::filesystem;

/// Uses the fallback theme of all desktops, with the icon as built.
class WindowIcon : public testing::Test {
protected:
  void SetUp() override {
    if (!fs::exists(fs::path(TIDEWELL_ICONS) / "hicolor/16x16/apps")) {
      GTEST_SKIP() << "built without pictures of the icon";
    }
    std::string index =
        "[Icon Theme]\nName=Hicolor\nDirectories=16x16/apps,64x64/apps,256x256/apps\n";
    for (const auto* size : {"16", "64", "256"}) {
      index += std::string("[") + size + "x" + size + "/apps]\nSize=" + size + "\n";
    }
    fs::create_directories(m_theme / "hicolor");
    writeInPlace(m_theme / "hicolor/index.theme", index);
    searchIn({QString::fromStdString(m_theme.path().string()), QStringLiteral(TIDEWELL_ICONS)});
  }
  void TearDown() override { searchIn(m_before); }

  static void searchIn(const QStringList& directories) {
    QIcon::setThemeSearchPaths(directories);
    QIcon::setThemeName(QStringLiteral("hicolor"));
  }

private:
  TemporaryDirectory m_theme;
  QStringList m_before = QIcon::themeSearchPaths();
};

TEST_F(WindowIcon, ComesFromTheThemeInTheSizesThatAreShown) {
  const QList<QSize> sizes = windowIcon().availableSizes();
  EXPECT_TRUE(sizes.contains(QSize(16, 16)));
  EXPECT_TRUE(sizes.contains(QSize(64, 64)));
  EXPECT_FALSE(sizes.contains(QSize(256, 256)));
}

TEST_F(WindowIcon, IsThatOfTheWindows) {
  QWidget* made = nullptr;
  SingleWindow window([&] { return made = new QWidget; });
  window.show({});
  EXPECT_FALSE(made->windowIcon().isNull());
  EXPECT_EQ(made->windowIcon().pixmap(QSize(32, 32), 1.0).toImage(),
            windowIcon().pixmap(QSize(32, 32), 1.0).toImage());
}

TEST_F(WindowIcon, IsNoneWhereItIsNotInstalled) {
  searchIn({});
  EXPECT_TRUE(windowIcon().isNull());
}

} // namespace
} // namespace tidewell::test
