#include "FilledPanel.h"

#include <QApplication>
#include <QTimer>

#include <chrono>
#include <ctime>
#include <iostream>

// An open panel in which nothing changes but the dot: how much of a core that takes.
//     pulseCost [SECONDS]
// Without QT_QPA_PLATFORM it draws into memory, else wherever that says.
int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  const QApplication application(argc, argv);
  const int seconds = argc > 1 ? std::atoi(argv[1]) : 10;
  tidewell::bench::FilledPanel panel;
  std::clock_t began = 0;
  QTimer::singleShot(1000, [&] { began = std::clock(); }); // what opening costs is another matter
  QTimer::singleShot(1000 * (seconds + 1), [] { QCoreApplication::quit(); });
  QApplication::exec();
  const double used = static_cast<double>(std::clock() - began) / CLOCKS_PER_SEC;
  std::cout << 100.0 * used / seconds << " % of a core\n";
  return 0;
}
