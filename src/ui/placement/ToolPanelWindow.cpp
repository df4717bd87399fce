#include "ui/placement/ToolPanelWindow.h"

#include "ui/placement/PanelPlacement.h"
#include "ui/placement/PanelWindow.h"

#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>

namespace tidewell {
namespace {

QList<ScreenArea> screens() {
  QList<ScreenArea> found;
  for (const QScreen* const screen : QGuiApplication::screens()) {
    found.append({screen->geometry(), screen->devicePixelRatio(), screen->availableGeometry()});
  }
  return found;
}

QScreen* screenOf(const QPoint& point) {
  QScreen* const screen = QGuiApplication::screenAt(point);
  return screen != nullptr ? screen : QGuiApplication::primaryScreen();
}

} // namespace

ToolPanelWindow::ToolPanelWindow()
    : PanelWindow(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint) {
  connect(&m_outsideClicks, &OutsideClicks::clicked, this,
          [this] { dismiss(Dismissal::elsewhere); });
}

void ToolPanelWindow::open(QWidget* content, std::optional<QPoint> point) {
  setAttribute(Qt::WA_TranslucentBackground, content->testAttribute(Qt::WA_TranslucentBackground));
  const QList<ScreenArea> areas = screens();
  const auto readings = point ? pointReadings(*point, areas, LikelyUnits::device) : QList<QPoint>();
  m_anchor = clickedPoint(readings, QCursor::pos(), areas);
  m_frame = new PanelFrame(content, this);
  content->installEventFilter(this);
  place();
  show();
  raise();
  activateWindow();
  // Otherwise the first button would have the focus ring before the user presses a key.
  content->setFocus();
}

void ToolPanelWindow::place() {
  const QScreen* const screen = screenOf(m_anchor.value_or(QCursor::pos()));
  const QRect whole = screen->geometry();
  const QRect workArea = screen->availableGeometry();
  const QPoint anchor = m_anchor.value_or(likelyAnchor(whole, workArea));
  const QSize size = m_frame->fit(panelRoom(whole, workArea).size());
  setGeometry({panelPosition(anchor, size, whole, workArea), size});
  blurBehind({QPoint(0, 0), size});
}

bool ToolPanelWindow::event(QEvent* event) {
  if (event->type() == QEvent::WindowDeactivate) {
    dismiss(Dismissal::elsewhere);
  }
  return PanelWindow::event(event);
}

bool ToolPanelWindow::eventFilter(QObject* watched, QEvent* event) {
  if (m_frame != nullptr && watched == m_frame->widget() && event->type() == QEvent::Resize) {
    place();
  }
  return PanelWindow::eventFilter(watched, event);
}

} // namespace tidewell
