#include <gtest/gtest.h>

#include <QApplication>
#include <QLocale>

#include <ctime>

// Qt paints large areas with threads of its own, and orders them in ways that the thread sanitizer
// does not see. The views themselves run on one thread.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer asks for this name.
extern "C" const char* __tsan_default_suppressions() {
  return "race:libQt6Core.so\nrace:libQt6Gui.so\n";
}

// Everything that could make two machines draw differently is settled before Qt looks at it.
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
