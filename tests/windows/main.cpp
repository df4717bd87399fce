#include <gtest/gtest.h>

#include <QApplication>

#include <clocale>

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_NO_GLIB", "1");
  qunsetenv("QT_SCALE_FACTOR");
  const QApplication application(argc, argv);
  std::setlocale(LC_MESSAGES, "C"); // the toolkit has set the developer's
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
