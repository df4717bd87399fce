#pragma once

#include <QObject>
#include <QSize>

#include <cstdint>

struct wl_output;
struct wl_surface;
struct zwlr_layer_shell_v1;
struct zwlr_layer_surface_v1;

namespace tidewell {

/// A surface that covers one screen, above all windows.
class LayerSurface final : public QObject {
  Q_OBJECT

public:
  /// Whether the application's compositor has a layer shell.
  [[nodiscard]] static bool isSupported();

  /// Assigns the overlay role to the surface, which must have none. Borrows the surface. The
  /// compositor chooses the screen if `output` is null.
  LayerSurface(wl_surface* surface, wl_output* output);
  ~LayerSurface() override;

  /// Extends the surface over bars.
  void coverBars();

Q_SIGNALS:
  /// The size to use. Draw nothing before the first one.
  void configured(const QSize& size);
  /// The screen was removed.
  void closed();

private:
  static void configure(void* self, zwlr_layer_surface_v1* surface, std::uint32_t serial,
                        std::uint32_t width, std::uint32_t height);
  static void close(void* self, zwlr_layer_surface_v1* surface);

  wl_surface* m_surface;
  zwlr_layer_surface_v1* m_layer;
};

} // namespace tidewell
