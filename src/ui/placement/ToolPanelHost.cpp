#include "ui/placement/ToolPanelHost.h"

#include "ui/placement/PanelPlacement.h"
#include "ui/placement/ScreenPoint.h"

#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>

namespace tidewell {

namespace {

QList<ScreenScale> screens() {
  QList<ScreenScale> found;
  for (const QScreen* const screen : QGuiApplication::screens()) {
    found.append({screen->geometry(), screen->devicePixelRatio()});
  }
  return found;
}

QScreen* screenOf(const QPoint& point) {
  QScreen* const screen = QGuiApplication::screenAt(point);
  return screen != nullptr ? screen : QGuiApplication::primaryScreen();
}

} // namespace

ToolPanelHost::ToolPanelHost()
    : PanelHost(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint) {
  connect(&m_outsideClicks, &OutsideClicks::clicked, this,
          [this] { dismiss(Dismissal::elsewhere); });
}

void ToolPanelHost::open(QWidget* content, std::optional<QPoint> point) {
  setAttribute(Qt::WA_TranslucentBackground, content->testAttribute(Qt::WA_TranslucentBackground));
  if (point) {
    m_anchor = fromHostPixels(*point, screens());
  }
  m_content = content;
  content->setParent(this);
  content->installEventFilter(this);
  content->adjustSize();
  content->show();
  place();
  show();
  raise();
  activateWindow();
}

void ToolPanelHost::place() {
  const QScreen* const screen = screenOf(m_anchor.value_or(QCursor::pos()));
  const QRect whole = screen->geometry();
  const QRect workArea = screen->availableGeometry();
  const QPoint anchor = m_anchor.value_or(likelyAnchor(whole, workArea));
  const QSize size = m_content->size();
  setGeometry({panelPosition(anchor, size, whole, workArea), size});
}

bool ToolPanelHost::event(QEvent* event) {
  if (event->type() == QEvent::WindowDeactivate) {
    dismiss(Dismissal::elsewhere);
  }
  return PanelHost::event(event);
}

bool ToolPanelHost::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_content && event->type() == QEvent::Resize) {
    place();
  }
  return PanelHost::eventFilter(watched, event);
}

} // namespace tidewell
