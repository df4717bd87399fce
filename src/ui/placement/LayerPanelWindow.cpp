#include "ui/placement/LayerPanelWindow.h"

#include "ui/placement/LayerSurface.h"
#include "ui/placement/PanelPlacement.h"
#include "ui/placement/PanelWindow.h"

#include <QEnterEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>

#include <chrono>

namespace tidewell {
namespace {

// The compositor reports the pointer as soon as the surface is shown, if it is on this screen.
constexpr std::chrono::milliseconds pointerPatience(80);

wl_surface* surfaceOf(QWindow* window) {
  return static_cast<wl_surface*>(
      QGuiApplication::platformNativeInterface()->nativeResourceForWindow("surface", window));
}

} // namespace

LayerPanelWindow::LayerPanelWindow()
    : PanelWindow(Qt::FramelessWindowHint | Qt::BypassWindowManagerHint) {
  setAttribute(Qt::WA_TranslucentBackground);
  m_patience.setSingleShot(true);
  connect(&m_patience, &QTimer::timeout, this, [this] { showPanel(std::nullopt); });
}

LayerPanelWindow::~LayerPanelWindow() {
  // Destroys the role before the surface, which the window owns.
  m_surface.reset();
}

bool LayerPanelWindow::isSupported() { return LayerSurface::isSupported(); }

void LayerPanelWindow::open(QWidget* content, std::optional<QPoint> /*point*/) {
  m_frame = new PanelFrame(content, this);
  m_frame->hide();
  content->installEventFilter(this);
  create();
  m_surface = std::make_unique<LayerSurface>(surfaceOf(windowHandle()));
  connect(m_surface.get(), &LayerSurface::configured, this, &LayerPanelWindow::configured);
  connect(m_surface.get(), &LayerSurface::closed, this, [this] { dismiss(Dismissal::here); });
}

void LayerPanelWindow::configured(const QSize& size) {
  resize(size);
  if (isVisible()) {
    place();
    return;
  }
  m_workSize = size;
  show();
  m_surface->coverBars();
  m_patience.start(pointerPatience);
}

void LayerPanelWindow::enterEvent(QEnterEvent* event) {
  if (m_frame->isHidden()) {
    showPanel(event->position().toPoint());
  }
}

void LayerPanelWindow::showPanel(std::optional<QPoint> pointer) {
  m_patience.stop();
  m_anchor = pointer;
  place();
  m_frame->show();
  m_frame->widget()->setFocus();
}

void LayerPanelWindow::place() {
  const QRect whole(QPoint(0, 0), size());
  // The compositor reports only how much space bars take. They are assumed at the pointer's edges.
  const QSize bars = size() - m_workSize;
  const QPoint pointer = m_anchor.value_or(QPoint(whole.right(), 0));
  QRect workArea(QPoint(0, 0), m_workSize);
  if (pointer.y() < whole.center().y()) {
    workArea.moveTop(bars.height());
  }
  if (pointer.x() < whole.center().x()) {
    workArea.moveLeft(bars.width());
  }
  const QSize panel = m_frame->fit(panelRoom(whole, workArea).size());
  m_frame->move(panelPosition(pointer, panel, whole, workArea));
}

void LayerPanelWindow::mousePressEvent(QMouseEvent* event) {
  if (!m_frame->geometry().contains(event->position().toPoint())) {
    dismiss(Dismissal::here);
  }
}

bool LayerPanelWindow::eventFilter(QObject* watched, QEvent* event) {
  if (m_frame != nullptr && watched == m_frame->widget() && event->type() == QEvent::Resize &&
      m_frame->isVisible()) {
    place();
  }
  return PanelWindow::eventFilter(watched, event);
}

} // namespace tidewell
