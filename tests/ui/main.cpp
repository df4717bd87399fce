#include <gtest/gtest.h>

#include <QApplication>
#include <QLocale>

#include <ctime>

// Qt paints large areas with its own threads, in an order that the thread sanitizer cannot see. The
// views run on one thread.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer requires this name.
extern "C" const char* __tsan_default_suppressions() {
  return "race:libQt6Core.so\nrace:libQt6Gui.so\n";
}

// Fixes everything that could make two machines draw differently, before Qt reads it.
int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("FONTCONFIG_FILE", TIDEWELL_FONTS);
  qputenv("TZ", "UTC");
  qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
  for (const char* name : {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI",
                           "QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME"}) {
    qunsetenv(name);
  }
  ::tzset();
  QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
