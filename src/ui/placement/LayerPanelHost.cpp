#include "ui/placement/LayerPanelHost.h"

#include "ui/placement/LayerSurface.h"
#include "ui/placement/PanelPlacement.h"

#include <QEnterEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>

#include <chrono>

namespace tidewell {

namespace {

// The pointer is told to have entered as soon as the surface is on the screen, if it is there.
constexpr std::chrono::milliseconds pointerPatience(80);

wl_surface* surfaceOf(QWindow* window) {
  return static_cast<wl_surface*>(
      QGuiApplication::platformNativeInterface()->nativeResourceForWindow("surface", window));
}

} // namespace

LayerPanelHost::LayerPanelHost()
    : PanelHost(Qt::FramelessWindowHint | Qt::BypassWindowManagerHint) {
  setAttribute(Qt::WA_TranslucentBackground);
  m_patience.setSingleShot(true);
  connect(&m_patience, &QTimer::timeout, this, [this] { showPanel(std::nullopt); });
}

LayerPanelHost::~LayerPanelHost() {
  // The role goes before the surface, which the window owns.
  m_surface.reset();
}

bool LayerPanelHost::isSupported() { return LayerSurface::isSupported(); }

void LayerPanelHost::open(QWidget* content, std::optional<QPoint> /*point*/) {
  m_content = content;
  content->setParent(this);
  content->hide();
  content->installEventFilter(this);
  create();
  m_surface = std::make_unique<LayerSurface>(surfaceOf(windowHandle()));
  connect(m_surface.get(), &LayerSurface::configured, this, &LayerPanelHost::configured);
  connect(m_surface.get(), &LayerSurface::closed, this, [this] { dismiss(Dismissal::here); });
}

void LayerPanelHost::configured(const QSize& size) {
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

void LayerPanelHost::enterEvent(QEnterEvent* event) {
  if (m_content->isHidden()) {
    showPanel(event->position().toPoint());
  }
}

void LayerPanelHost::showPanel(std::optional<QPoint> pointer) {
  m_patience.stop();
  m_anchor = pointer;
  m_content->adjustSize();
  place();
  m_content->show();
  m_content->setFocus();
}

void LayerPanelHost::place() {
  const QRect whole(QPoint(0, 0), size());
  // All that the compositor tells is how much room bars take; they lie where the pointer is.
  const QSize bars = size() - m_workSize;
  const QPoint pointer = m_anchor.value_or(QPoint(whole.right(), 0));
  QRect workArea(QPoint(0, 0), m_workSize);
  if (pointer.y() < whole.center().y()) {
    workArea.moveTop(bars.height());
  }
  if (pointer.x() < whole.center().x()) {
    workArea.moveLeft(bars.width());
  }
  m_content->move(panelPosition(pointer, m_content->size(), whole, workArea));
}

void LayerPanelHost::mousePressEvent(QMouseEvent* event) {
  if (!m_content->geometry().contains(event->position().toPoint())) {
    dismiss(Dismissal::here);
  }
}

bool LayerPanelHost::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_content && event->type() == QEvent::Resize && m_content->isVisible()) {
    place();
  }
  return PanelHost::eventFilter(watched, event);
}

} // namespace tidewell
