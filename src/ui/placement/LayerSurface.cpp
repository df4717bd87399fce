#include "ui/placement/LayerSurface.h"

#include "layer-shell.h"
#include "ui/placement/Display.h"

namespace tidewell {
namespace {

// Values of the protocol: all four edges; exclusive keyboard input while shown.
constexpr std::uint32_t everyEdge = 1 | 2 | 4 | 8;
constexpr std::uint32_t wholeKeyboard = 1;

// Values of the protocol: beside reserved areas, or over them.
constexpr std::int32_t besideBars = 0;
constexpr std::int32_t overBars = -1;

/// The layer shell of the application's connection. Looked up once.
zwlr_layer_shell_v1* shell() {
  static auto* const found =
      static_cast<zwlr_layer_shell_v1*>(bindWaylandGlobal(zwlr_layer_shell_v1_interface));
  return found;
}

} // namespace

bool LayerSurface::isSupported() { return shell() != nullptr; }

LayerSurface::LayerSurface(wl_surface* surface, wl_output* output)
    : m_surface(surface),
      m_layer(zwlr_layer_shell_v1_get_layer_surface(
          shell(), surface, output, ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, "tidewell")) {
  static constexpr zwlr_layer_surface_v1_listener listener = {configure, close};
  zwlr_layer_surface_v1_add_listener(m_layer, &listener, this);
  zwlr_layer_surface_v1_set_anchor(m_layer, everyEdge);
  zwlr_layer_surface_v1_set_exclusive_zone(m_layer, besideBars);
  zwlr_layer_surface_v1_set_keyboard_interactivity(m_layer, wholeKeyboard);
  wl_surface_commit(surface);
}

LayerSurface::~LayerSurface() {
  if (m_covering != nullptr) {
    wl_callback_destroy(m_covering);
  }
  zwlr_layer_surface_v1_destroy(m_layer);
}

void LayerSurface::coverBars() {
  zwlr_layer_surface_v1_set_exclusive_zone(m_layer, overBars);
  wl_surface_commit(m_surface);
  m_covering = wl_display_sync(waylandDisplay());
  static constexpr wl_callback_listener listener = {cover};
  wl_callback_add_listener(m_covering, &listener, this);
}

void LayerSurface::cover(void* self, wl_callback* covering, std::uint32_t /*data*/) {
  wl_callback_destroy(covering);
  auto& surface = *static_cast<LayerSurface*>(self);
  surface.m_covering = nullptr;
  Q_EMIT surface.covered();
}

void LayerSurface::configure(void* self, zwlr_layer_surface_v1* surface, std::uint32_t serial,
                             std::uint32_t width, std::uint32_t height) {
  zwlr_layer_surface_v1_ack_configure(surface, serial);
  Q_EMIT static_cast<LayerSurface*>(self)->configured(
      QSize(static_cast<int>(width), static_cast<int>(height)));
}

void LayerSurface::close(void* self, zwlr_layer_surface_v1* /*surface*/) {
  Q_EMIT static_cast<LayerSurface*>(self)->closed();
}

} // namespace tidewell
