#pragma once

#include <QObject>
#include <QSize>

#include <cstdint>

struct wl_callback;
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

  /// Extends the surface over bars. `covered` follows.
  void coverBars();

Q_SIGNALS:
  /// The size to use. Draw nothing before the first one, which leaves bars out.
  void configured(const QSize& size);
  /// The compositor has taken note, and has sent the new size if it did so at once.
  void covered();
  /// The screen was removed.
  void closed();

private:
  static void configure(void* self, zwlr_layer_surface_v1* surface, std::uint32_t serial,
                        std::uint32_t width, std::uint32_t height);
  static void cover(void* self, wl_callback* covering, std::uint32_t data);
  static void close(void* self, zwlr_layer_surface_v1* surface);

  wl_surface* m_surface;
  wl_callback* m_covering = nullptr;
  zwlr_layer_surface_v1* m_layer;
};

} // namespace tidewell
