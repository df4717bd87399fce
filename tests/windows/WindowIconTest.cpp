#include "ui/application/SingleWindow.h"

#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <QTest>
#include <QWidget>

#include <filesystem>
#include <string>

namespace tidewell::test {
namespace {

namespace fs = std::filesystem;

/// The theme that every desktop falls back to, of which the build has our icon's directories.
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
