#include "ui/application/SingleWindow.h"

#include "ui/application/WindowHints.h"

#include <QByteArray>
#include <QString>

#include <utility>

namespace tidewell {

QIcon windowIcon() {
  const QIcon theme = QIcon::fromTheme(QStringLiteral("com.halden.Tidewell"));
  QIcon icon;
  // X11 stores all sizes in one property of each window. All sizes of the theme would take more
  // than a megabyte.
  for (const int size : {16, 24, 32, 48, 64}) {
    const QPixmap picture = theme.pixmap(QSize(size, size), 1.0);
    if (!picture.isNull()) {
      icon.addPixmap(picture);
    }
  }
  return icon;
}

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
    requestDarkTitleBar(*m_window);
    connect(m_window, &QObject::destroyed, this, [this] {
      m_window.clear();
      Q_EMIT closed();
    });
  }
  if (!token.empty()) {
    // The toolkit reads the token from here when the window requests the focus.
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
