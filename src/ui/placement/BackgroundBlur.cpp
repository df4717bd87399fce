#include "ui/placement/BackgroundBlur.h"

#include "background-blur.h"
#include "ui/placement/Display.h"

#include <QPainterPath>
#include <QRegion>
#include <QWidget>
#include <QWindow>

#include <cstdint>
#include <vector>

#include <wayland-client.h>
#include <xcb/xcb.h>

namespace tidewell {
namespace {

QRegion roundedRegion(const QRectF& area, double radius) {
  QPainterPath path;
  path.addRoundedRect(area, radius, radius);
  return QRegion(path.toFillPolygon().toPolygon());
}

/// Looked up once. Null with other compositors.
org_kde_kwin_blur_manager* blurManager() {
  static auto* const found = static_cast<org_kde_kwin_blur_manager*>(
      bindWaylandGlobal(org_kde_kwin_blur_manager_interface));
  return found;
}

/// For the X server, in device pixels.
void setBlurProperty(xcb_connection_t* connection, QWidget& window, const QRegion& region) {
  std::vector<std::uint32_t> rectangles;
  for (const QRect& each : region) {
    for (const int number : {each.x(), each.y(), each.width(), each.height()}) {
      rectangles.push_back(static_cast<std::uint32_t>(number));
    }
  }
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()),
                      xAtom(connection, "_KDE_NET_WM_BLUR_BEHIND_REGION"), XCB_ATOM_CARDINAL, 32,
                      static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

} // namespace

/// The compositor blurs while this exists.
struct BackgroundBlur::KWinBlur {
  explicit KWinBlur(wl_surface* surface)
      : blur(org_kde_kwin_blur_manager_create(blurManager(), surface)),
        compositor(static_cast<wl_compositor*>(bindWaylandGlobal(wl_compositor_interface))) {}
  KWinBlur(const KWinBlur&) = delete;
  KWinBlur& operator=(const KWinBlur&) = delete;
  ~KWinBlur() {
    org_kde_kwin_blur_release(blur);
    wl_compositor_destroy(compositor);
  }

  org_kde_kwin_blur* blur;
  wl_compositor* compositor;
};

BackgroundBlur::BackgroundBlur(QWidget& window) : m_window(window) {
  if (blurManager() != nullptr) {
    m_blur = std::make_unique<KWinBlur>(waylandSurface(window.windowHandle()));
  }
}

BackgroundBlur::~BackgroundBlur() = default;

void BackgroundBlur::set(const QRect& area, int radius) {
  if (xcb_connection_t* const connection = xConnection(); connection != nullptr) {
    const double scale = m_window.devicePixelRatioF();
    setBlurProperty(connection, m_window,
                    roundedRegion({area.x() * scale, area.y() * scale, area.width() * scale,
                                   area.height() * scale},
                                  radius * scale));
  } else if (m_blur) {
    wl_region* const region = wl_compositor_create_region(m_blur->compositor);
    for (const QRect& each : roundedRegion(area, radius)) {
      wl_region_add(region, each.x(), each.y(), each.width(), each.height());
    }
    org_kde_kwin_blur_set_region(m_blur->blur, region);
    wl_region_destroy(region);
    // Takes effect with the window's next frame.
    org_kde_kwin_blur_commit(m_blur->blur);
  }
}

} // namespace tidewell
