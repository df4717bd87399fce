#include "ui/process/SingleWindow.h"

#include "ui/process/WindowIcon.h"

#include <QByteArray>

#include <utility>

namespace tidewell {

SingleWindow::SingleWindow(Make make) : m_make(std::move(make)) {}

SingleWindow::~SingleWindow() {
  if (m_window) {
    m_window->disconnect(this);
    delete m_window.data();
  }
}

void SingleWindow::show(const std::string& token) {
  const bool isNew = m_window.isNull();
  if (isNew) {
    m_window = m_make();
    m_window->setAttribute(Qt::WA_DeleteOnClose);
    m_window->setWindowIcon(windowIcon());
    connect(m_window, &QObject::destroyed, this, [this] {
      m_window.clear();
      Q_EMIT closed();
    });
  }
  if (!token.empty()) {
    // Where the toolkit looks for it when the window asks for the focus.
    qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(token));
  }
  m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
  m_window->show();
  m_window->raise();
  m_window->activateWindow();
  if (isNew) {
    Q_EMIT opened();
  }
}

} // namespace tidewell
