#include "platform/linux/files/Catalogue.h"
#include "platform/linux/files/FilePath.h"
#include "platform/linux/process/Confinement.h"
#include "ui/application/WindowsApplication.h"
#include "ui/placement/Display.h"
#include "ui/tokens/TWColor.h"

#include <QApplication>
#include <QDBusConnection>
#include <QPalette>

#include <csignal>
#include <iostream>
#include <string>
#include <string_view>

namespace {

/// The request of a user who starts this program: the window named by the first argument, or the
/// panel.
tidewell::WindowRequest requestOf(const QStringList& arguments) {
  const std::string word = arguments.value(1, QStringLiteral("panel")).toStdString();
  const auto request = tidewell::parseWindowRequest(word + " -");
  return request.value_or(tidewell::WindowRequest{});
}

/// The path of the resident: what it says, or where a user who starts this program finds it.
std::string residentOf(int argumentCount, char** arguments) {
  const std::string_view first = argumentCount > 1 ? arguments[1] : "";
  return first.starts_with(tidewell::residentOption)
             ? std::string(first.substr(tidewell::residentOption.size()))
             : tidewell::residentProgram(tidewell::runningProgram());
}

} // namespace

int main(int argumentCount, char** arguments) {
  tidewell::forbidNewPrivileges();
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN)); // whoever read the output may be gone
  const std::string resident = residentOf(argumentCount, arguments);
  if (!tidewell::chooseDisplay()) {
    std::cerr << "tidewell-windows: there is no display\n";
    return 1;
  }
  QApplication::setQuitOnLastWindowClosed(false);
  // The windows take nothing from the desktop's theme. Its plug-in for Qt loads a whole toolkit.
  QApplication::setDesktopSettingsAware(false);
  // Becomes the windows' class under X11, and the program's name for assistive technology.
  QApplication::setApplicationName(QStringLiteral("Tidewell"));
  QApplication::setDesktopFileName(QStringLiteral("com.halden.Tidewell"));
  const QApplication application(argumentCount, arguments);
  QApplication::setStyle(QStringLiteral("Fusion"));
  // For title bars that Qt draws, and whatever else a style takes from here.
  QPalette palette;
  palette.setColor(QPalette::Window, tidewell::TWColor::surface);
  palette.setColor(QPalette::WindowText, tidewell::TWColor::text);
  QApplication::setPalette(palette);
  tidewell::loadCatalogue(tidewell::catalogueDirectory(resident)); // after the toolkit set a locale
  tidewell::WindowsApplication windows(QDBusConnection::sessionBus(), resident);
  if (!tidewell::ResidentSocket::isThere()) {
    windows.handle(requestOf(QApplication::arguments()));
  }
  return QApplication::exec();
}
