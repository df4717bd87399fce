#pragma once

#include <QObject>
#include <QSize>

#include <cstdint>

struct wl_surface;
struct zwlr_layer_shell_v1;
struct zwlr_layer_surface_v1;

namespace tidewell {

/// A surface above all windows that covers one screen. Main thread.
class LayerSurface final : public QObject {
  Q_OBJECT

public:
  /// Whether the compositor the application is connected to has a layer shell.
  [[nodiscard]] static bool isSupported();

  /// Gives the surface, which has no role yet, that of an overlay. Borrows the surface. The
  /// compositor picks the screen: the one that the user works on.
  explicit LayerSurface(wl_surface* surface);
  LayerSurface(const LayerSurface&) = delete;
  LayerSurface& operator=(const LayerSurface&) = delete;
  ~LayerSurface() override;

  /// From now on the surface covers bars, too.
  void coverBars();

Q_SIGNALS:
  /// The surface is to have this size; nothing may be drawn before the first one.
  void configured(const QSize& size);
  /// The screen is gone.
  void closed();

private:
  static void configure(void* self, zwlr_layer_surface_v1* surface, std::uint32_t serial,
                        std::uint32_t width, std::uint32_t height);
  static void close(void* self, zwlr_layer_surface_v1* surface);

  wl_surface* m_surface;
  zwlr_layer_surface_v1* m_layer;
};

} // namespace tidewell
