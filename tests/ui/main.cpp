#include <gtest/gtest.h>

#include <QApplication>
#include <QLocale>

#include <clocale>
#include <ctime>

// Fixes everything that could make two machines draw differently, before Qt reads it.
int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QByteArray otherFonts = qgetenv("TIDEWELL_TEST_FONTS");
  qputenv("FONTCONFIG_FILE", otherFonts.isEmpty() ? QByteArray(TIDEWELL_FONTS) : otherFonts);
  qputenv("TZ", "UTC");
  qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
  for (const char* name : {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI",
                           "QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME"}) {
    qunsetenv(name);
  }
  ::tzset();
  QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
  const QApplication application(argc, argv);
  std::setlocale(LC_MESSAGES, "C"); // the toolkit has set the developer's
  return RUN_ALL_TESTS();
}
