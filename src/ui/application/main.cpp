#include "platform/linux/process/Confinement.h"
#include "ui/application/WindowsApplication.h"
#include "ui/placement/Display.h"

#include <QApplication>
#include <QDBusConnection>

#include <iostream>

namespace {

/// What somebody asks who starts this program by hand: the window of the first word, else the
/// panel.
tidewell::WindowRequest requestOf(const QStringList& arguments) {
  const std::string word = arguments.value(1, QStringLiteral("panel")).toStdString();
  const auto request = tidewell::parseWindowRequest(word + " -");
  return request.value_or(tidewell::WindowRequest{});
}

} // namespace

int main(int argumentCount, char** arguments) {
  tidewell::forbidNewPrivileges();
  if (!tidewell::chooseDisplay()) {
    std::cerr << "tidewell-windows: there is no display\n";
    return 1;
  }
  QApplication::setQuitOnLastWindowClosed(false);
  // Under X11 the windows' class, and what assistive technology calls the program.
  QApplication::setApplicationName(QStringLiteral("Tidewell"));
  QApplication::setDesktopFileName(QStringLiteral("com.halden.Tidewell"));
  const QApplication application(argumentCount, arguments);
  QApplication::setStyle(QStringLiteral("Fusion"));
  tidewell::WindowsApplication windows(QDBusConnection::sessionBus(),
                                       tidewell::residentProgram(tidewell::runningProgram()));
  if (!tidewell::ResidentSocket::isThere()) {
    windows.handle(requestOf(QApplication::arguments()));
  }
  return QApplication::exec();
}
