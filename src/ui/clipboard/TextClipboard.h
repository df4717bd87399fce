#pragma once

#include <string>

struct wl_seat;
struct zwlr_data_control_device_v1;
struct zwlr_data_control_manager_v1;
struct zwlr_data_control_offer_v1;
struct zwlr_data_control_source_v1;

namespace tidewell {

/// The desktop's clipboard. Wayland's compositors take a text only from the program that has the
/// keyboard, unless they have data control; then the menu's row works, too, which opens no window.
class TextClipboard {
public:
  TextClipboard();
  TextClipboard(TextClipboard&&) = delete;
  ~TextClipboard();

  /// Offers the text, of at most some kilobytes, until another program offers something. Returns
  /// false if the compositor would ignore it.
  [[nodiscard]] bool set(const std::string& text);

  /// Whether this process offers the clipboard's content, which would be lost at its end.
  [[nodiscard]] bool isOwned() const;

private:
  static void offered(void* self, zwlr_data_control_device_v1* device,
                      zwlr_data_control_offer_v1* offer);
  static void selected(void* self, zwlr_data_control_device_v1* device,
                       zwlr_data_control_offer_v1* offer);
  static void finished(void* self, zwlr_data_control_device_v1* device);
  static void send(void* self, zwlr_data_control_source_v1* source, const char* type, int file);
  static void cancelled(void* self, zwlr_data_control_source_v1* source);

  void release();

  wl_seat* m_seat = nullptr;
  zwlr_data_control_manager_v1* m_manager = nullptr;
  zwlr_data_control_device_v1* m_device = nullptr;
  zwlr_data_control_source_v1* m_source = nullptr;
  std::string m_text;
};

} // namespace tidewell
