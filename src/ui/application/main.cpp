#include "platform/linux/process/Confinement.h"
#include "ui/application/WindowsApplication.h"
#include "ui/placement/Display.h"

#include <QApplication>
#include <QDBusConnection>

#include <iostream>

namespace {

/// The request of a user who starts this program: the window named by the first argument, or the
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
  // Becomes the windows' class under X11, and the program's name for assistive technology.
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
