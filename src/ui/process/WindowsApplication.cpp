#include "ui/process/WindowsApplication.h"

#include <QClipboard>
#include <QDBusConnectionInterface>
#include <QGuiApplication>

#include <chrono>
#include <utility>

namespace tidewell {

namespace {

using Window = WindowRequest::Kind;

// Opening again within this time costs a few milliseconds; afterwards a new process.
constexpr std::chrono::seconds idleLife(60);

// The resident answers within a few milliseconds, or does not run.
constexpr std::chrono::milliseconds valuesPatience(150);

QString ownName() { return QStringLiteral("com.halden.Tidewell.Windows"); }

void copy(const std::string& text) {
  QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

} // namespace

WindowsApplication::WindowsApplication(QDBusConnection bus)
    : m_bus(std::move(bus)), m_mirror(m_bus), m_panel(m_mirror.state(), panelActions()) {
  m_idle.setSingleShot(true);
  m_idle.setInterval(idleLife);
  connect(&m_idle, &QTimer::timeout, this, &WindowsApplication::leaveIfUnused);
  connect(&m_panel, &PanelController::opened, this,
          [this] {
            report(WindowReport::Kind::opened, Window::panel);
            windowsChanged();
          });
  connect(&m_panel, &PanelController::closed, this,
          [this] {
            report(WindowReport::Kind::closed, Window::panel);
            windowsChanged();
          });
  connect(&m_mirror, &ResidentMirror::known, this, &WindowsApplication::startWithValues);
  QTimer::singleShot(valuesPatience, this, &WindowsApplication::startWithValues);
  listen();
  becomeTheOnlyOne();
  windowsChanged();
}

WindowsApplication::~WindowsApplication() = default;

PanelActions WindowsApplication::panelActions() {
  const auto show = [this](Window window) {
    m_panel.close();
    perform({window, {}, {}, {}});
  };
  return {[show] { show(Window::detail); }, [show] { show(Window::settings); },
          [this] { m_mirror.request(QStringLiteral("RunSpeedTest")); },
          [this] {
            m_mirror.request(QStringLiteral("Quit"));
            m_panel.close();
          },
          copy};
}

void WindowsApplication::listen() {
  if (!ResidentSocket::isThere()) {
    return;
  }
  m_socket = std::make_unique<ResidentSocket>();
  connect(m_socket.get(), &ResidentSocket::requested, this, &WindowsApplication::handle);
  // Windows stay when the resident is gone: it may come back, and they say so until then.
  connect(m_socket.get(), &ResidentSocket::closed, this, &WindowsApplication::windowsChanged);
}

void WindowsApplication::becomeTheOnlyOne() {
  QDBusConnectionInterface* const names = m_bus.interface();
  if (names == nullptr) {
    return;
  }
  connect(names, &QDBusConnectionInterface::serviceUnregistered, this, [](const QString& name) {
    if (name == ownName()) {
      QCoreApplication::quit();
    }
  });
  // Whoever has the name belongs to a resident that is gone, since a resident has one such process.
  names->registerService(ownName(), QDBusConnectionInterface::ReplaceExistingService,
                         QDBusConnectionInterface::AllowReplacement);
}

void WindowsApplication::handle(const WindowRequest& request) {
  if (m_isReady) {
    perform(request);
  } else {
    m_waiting.push_back(request);
  }
}

void WindowsApplication::startWithValues() {
  m_isReady = true;
  for (const WindowRequest& request : std::exchange(m_waiting, {})) {
    perform(request);
  }
}

void WindowsApplication::perform(const WindowRequest& request) {
  std::optional<QPoint> point;
  if (request.point) {
    point = QPoint(request.point->x, request.point->y);
  }
  switch (request.kind) {
  case Window::panel:
    m_panel.toggle(point);
    break;
  case Window::copy:
    copy(request.text);
    windowsChanged();
    break;
  case Window::quit:
    QCoreApplication::quit();
    break;
  case Window::detail:
  case Window::settings:
  case Window::showItem:
  case Window::hideItem:
    break;
  }
}

void WindowsApplication::report(WindowReport::Kind kind, Window window) const {
  if (m_socket) {
    m_socket->report({kind, window});
  }
}

void WindowsApplication::windowsChanged() {
  if (m_panel.isOpen()) {
    m_idle.stop();
  } else {
    m_idle.start();
  }
}

void WindowsApplication::leaveIfUnused() {
  if (QGuiApplication::clipboard()->ownsClipboard()) {
    // What was copied would go along.
    m_idle.start();
    return;
  }
  QCoreApplication::quit();
}

} // namespace tidewell
