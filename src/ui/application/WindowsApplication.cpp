#include "ui/application/WindowsApplication.h"

#include "bus/ResidentInterface.h"
#include "ui/application/AbsenceNotice.h"
#include "ui/application/WindowHints.h"
#include "ui/components/ShownText.h"
#include "ui/detail/DetailWindowView.h"
#include "ui/item/OwnItem.h"
#include "ui/settings/SettingsView.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QStringList>
#include <QVariantMap>

#include <chrono>
#include <utility>

namespace tidewell {
namespace {

using Window = WindowRequest::Kind;

// Reopening a window within this time takes a few milliseconds; later it takes a new process.
constexpr std::chrono::seconds idleLife(60);

// A running resident answers within a few milliseconds.
constexpr std::chrono::milliseconds valuesPatience(150);

QString ownName() { return QStringLiteral("com.halden.Tidewell.Windows"); }

} // namespace

WindowsApplication::WindowsApplication(QDBusConnection bus, const std::string& resident)
    : m_bus(std::move(bus)), m_mirror(m_bus), m_preferences(resident),
      m_panel(m_mirror.state(), panelActions()), m_detail([this] { return makeDetail(); }),
      m_settings([this] { return makeSettings(); }) {
  m_idle.setSingleShot(true);
  m_idle.setInterval(idleLife);
  connect(&m_idle, &QTimer::timeout, this, &WindowsApplication::leaveIfUnused);
  watch(m_panel, Window::panel);
  watch(m_detail, Window::detail);
  watch(m_settings, Window::settings);
  connect(&m_mirror, &ResidentMirror::known, this, &WindowsApplication::startWithValues);
  m_patience.setSingleShot(true);
  connect(&m_patience, &QTimer::timeout, this, &WindowsApplication::startWithValues);
  m_patience.start(valuesPatience);
  listen();
  becomeTheOnlyOne();
  windowsChanged();
}

WindowsApplication::~WindowsApplication() = default;

PanelActions WindowsApplication::panelActions() {
  const auto show = [this](SingleWindow& window) {
    m_panel.close();
    window.show({});
  };
  return {[this, show] { show(m_detail); }, [this, show] { show(m_settings); },
          [this] { m_mirror.request(residentInterface::runSpeedTest); }, [this] { quitAll(); },
          [this](const std::string& text) { copy(text); }};
}

ItemCommands WindowsApplication::itemCommands() {
  return {[this](std::optional<QPoint> point) { m_panel.toggle(point); },
          [this] { m_detail.show({}); },
          [this] { m_settings.show({}); },
          [this] { m_mirror.request(residentInterface::runSpeedTest); },
          [this] { copy(addressToCopy(m_mirror.state().monitor.connectionInfo.get())); },
          [this] { quitAll(); }};
}

QWidget* WindowsApplication::makeDetail() {
  ResidentState& state = m_mirror.state();
  auto* const view = new DetailWindowView(
      {state.sampler, state.monitor, state.tracker, state.speedTest, state.isThere},
      {[this] { m_mirror.request(residentInterface::runSpeedTest); },
       [this](const std::string& text) { copy(text); }});
  new AbsenceNotice(state.isThere, AbsenceNotice::Edge::bottom, view);
  return view;
}

QWidget* WindowsApplication::makeSettings() {
  return new SettingsView(Preferences::settings(), m_preferences.store());
}

void WindowsApplication::listen() {
  if (!ResidentSocket::isThere()) {
    return;
  }
  m_socket = std::make_unique<ResidentSocket>();
  connect(m_socket.get(), &ResidentSocket::requested, this, &WindowsApplication::handle);
  // Windows stay open without the resident, which may come back. They show a notice until then.
  connect(m_socket.get(), &ResidentSocket::closed, this, [this] { setItemShown(false); });
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
  // A resident has one such process, so the current owner belongs to a resident that has exited.
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
  case Window::detail:
    m_detail.show(request.token);
    break;
  case Window::settings:
    m_settings.show(request.token);
    break;
  case Window::copy:
    copy(request.text);
    break;
  case Window::showItem:
  case Window::hideItem:
    setItemShown(request.kind == Window::showItem);
    break;
  case Window::quit:
    QCoreApplication::quit();
    break;
  }
  endStartupNotification(request.token);
}

void WindowsApplication::copy(const std::string& text) {
  if (!m_clipboard) {
    m_clipboard = std::make_unique<TextClipboard>();
  }
  if (!m_clipboard->set(text)) {
    sayNotCopied();
  }
  windowsChanged();
}

void WindowsApplication::sayNotCopied() {
  QDBusMessage notice = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.Notifications"),
      QStringLiteral("/org/freedesktop/Notifications"),
      QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
  constexpr int serversExpiry = -1;
  notice << QStringLiteral("Tidewell") << 0U << QStringLiteral("com.halden.Tidewell")
         << translatedText("The address was not copied")
         << translatedText("Here only the active window can copy. Use Copy IP in the panel.")
         << QStringList() << QVariantMap() << serversExpiry;
  m_bus.send(notice);
}

void WindowsApplication::quitAll() {
  m_mirror.request(residentInterface::quit);
  m_panel.close();
}

void WindowsApplication::setItemShown(bool isShown) {
  m_item =
      isShown ? std::make_unique<OwnItem>(m_mirror.state().menubarText, itemCommands()) : nullptr;
  windowsChanged();
}

template <class Shown> void WindowsApplication::watch(Shown& shown, Window kind) {
  const auto report = [this, kind](WindowReport::Kind what) {
    if (m_socket) {
      m_socket->report({what, kind});
    }
    windowsChanged();
  };
  connect(&shown, &Shown::opened, this, [report] { report(WindowReport::Kind::opened); });
  connect(&shown, &Shown::closed, this, [report] { report(WindowReport::Kind::closed); });
}

void WindowsApplication::windowsChanged() {
  if (m_panel.isOpen() || m_detail.isOpen() || m_settings.isOpen() || m_item) {
    m_idle.stop();
  } else {
    m_idle.start();
  }
}

void WindowsApplication::leaveIfUnused() {
  if (m_clipboard && m_clipboard->isOwned()) {
    // Exiting would clear the clipboard.
    m_idle.start();
    return;
  }
  QCoreApplication::quit();
}

} // namespace tidewell
