#include "ui/placement/LayerPanelWindow.h"

#include "ui/placement/Display.h"
#include "ui/placement/LayerSurface.h"
#include "ui/placement/PanelPlacement.h"
#include "ui/placement/PanelWindow.h"

#include <QEnterEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>

#include <chrono>

namespace tidewell {
namespace {

// Most compositors report the pointer as soon as the surface is shown, if it is on this screen.
constexpr std::chrono::milliseconds pointerPatience(250);

// In milliseconds. Others report it when it moves. Later it has left the item.
constexpr int pointerFreshness = 500;

/// The toolkit rounds their scales up.
QList<ScreenArea> screens() {
  QList<ScreenArea> found;
  for (const QScreen* const screen : QGuiApplication::screens()) {
    found.append({screen->geometry(), screen->devicePixelRatio()});
  }
  return found;
}

/// The screen to use for a click on this point. Null leaves it to the compositor.
QScreen* screenFor(std::optional<QPoint> point) {
  const QList<ScreenArea> areas = screens();
  const auto index = point
                         ? clickedScreen(pointReadings(*point, areas, LikelyUnits::logical), areas)
                         : std::nullopt;
  return index ? QGuiApplication::screens().at(*index) : nullptr;
}

wl_output* outputOf(QScreen* screen) {
  return screen == nullptr
             ? nullptr
             : static_cast<wl_output*>(
                   QGuiApplication::platformNativeInterface()->nativeResourceForScreen("output",
                                                                                       screen));
}

} // namespace

LayerPanelWindow::LayerPanelWindow()
    : PanelWindow(Qt::FramelessWindowHint | Qt::BypassWindowManagerHint) {
  setAttribute(Qt::WA_TranslucentBackground);
  m_patience.setSingleShot(true);
  connect(&m_patience, &QTimer::timeout, this, [this] { showPanel(); });
}

LayerPanelWindow::~LayerPanelWindow() {
  // Before the surface, which the window owns.
  m_surface.reset();
}

bool LayerPanelWindow::isSupported() { return LayerSurface::isSupported(); }

void LayerPanelWindow::open(QWidget* content, std::optional<QPoint> point) {
  m_frame = new PanelFrame(content, this);
  m_frame->hide();
  content->installEventFilter(this);
  m_told = point;
  QScreen* const screen = screenFor(point);
  if (screen != nullptr) {
    setScreen(screen);
  }
  create();
  m_surface = std::make_unique<LayerSurface>(waylandSurface(windowHandle()), outputOf(screen));
  connect(m_surface.get(), &LayerSurface::configured, this, &LayerPanelWindow::configured);
  connect(m_surface.get(), &LayerSurface::covered, this, &LayerPanelWindow::begin);
  connect(m_surface.get(), &LayerSurface::closed, this, [this] { dismiss(Dismissal::here); });
  // The toolkit learns the compositor's choice after the surface is shown.
  connect(windowHandle(), &QWindow::screenChanged, this, [this] {
    if (m_frame->isVisible()) {
      place();
    }
  });
}

void LayerPanelWindow::dismiss(Dismissal how) {
  // Hiding may destroy the toolkit's surface, which compositors allow only without a role.
  if (m_surface) {
    m_surface.reset();
    hide();
    Q_EMIT dismissed(how);
  }
}

void LayerPanelWindow::configured(const QSize& size) {
  resize(size);
  if (m_workSize.isEmpty()) {
    m_workSize = size;
    m_surface->coverBars();
  } else if (m_frame->isVisible()) {
    place();
  } else if (isVisible() && bestPlace().isCertain) {
    showPanel();
  }
}

void LayerPanelWindow::begin() {
  // Over the bars from the beginning, because compositors look for the pointer then.
  show();
  m_sinceShown.start();
  m_patience.start(pointerPatience);
  if (bestPlace().isCertain) {
    showPanel();
  }
}

void LayerPanelWindow::enterEvent(QEnterEvent* event) {
  if (m_sinceShown.hasExpired(pointerFreshness)) {
    return;
  }
  const bool isCertain = bestPlace().isCertain;
  m_pointer = event->position().toPoint();
  if (m_frame->isHidden()) {
    showPanel();
  } else if (!isCertain) {
    place();
  }
}

void LayerPanelWindow::showPanel() {
  m_patience.stop();
  place();
  m_frame->show();
  m_frame->widget()->setFocus();
}

PanelPlace LayerPanelWindow::bestPlace() const {
  QList<QPoint> readings;
  if (m_told) {
    readings = readingsOn(screen()->geometry(), *m_told,
                          {windowHandle()->devicePixelRatio(), screen()->devicePixelRatio()});
  }
  return panelPlace(readings, m_pointer, size(), m_workSize);
}

void LayerPanelWindow::place() {
  const QRect whole(QPoint(0, 0), size());
  const PanelPlace best = bestPlace();
  const QSize panel = m_frame->fit(panelRoom(whole, best.workArea).size());
  m_frame->move(panelPosition(best.anchor, panel, whole, best.workArea));
  blurBehind(m_frame->geometry());
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
