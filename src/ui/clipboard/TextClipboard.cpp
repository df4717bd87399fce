#include "ui/clipboard/TextClipboard.h"

#include "data-control.h"
#include "ui/placement/Display.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QString>

#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace tidewell {
namespace {

// The types by which programs of the usual toolkits ask for text.
constexpr const char* textTypes[] = {"text/plain;charset=utf-8", "text/plain", "UTF8_STRING",
                                     "STRING", "TEXT"};

} // namespace

TextClipboard::TextClipboard()
    : m_seat(static_cast<wl_seat*>(bindWaylandGlobal(wl_seat_interface))),
      m_manager(static_cast<zwlr_data_control_manager_v1*>(
          bindWaylandGlobal(zwlr_data_control_manager_v1_interface))) {
  if (m_manager != nullptr && m_seat != nullptr) {
    m_device = zwlr_data_control_manager_v1_get_data_device(m_manager, m_seat);
    static constexpr zwlr_data_control_device_v1_listener listener = {offered, selected, finished};
    zwlr_data_control_device_v1_add_listener(m_device, &listener, this);
  }
}

TextClipboard::~TextClipboard() {
  release();
  if (m_device != nullptr) {
    zwlr_data_control_device_v1_destroy(m_device);
  }
  if (m_manager != nullptr) {
    zwlr_data_control_manager_v1_destroy(m_manager);
  }
  if (m_seat != nullptr) {
    wl_seat_destroy(m_seat);
  }
}

bool TextClipboard::set(const std::string& text) {
  if (m_device == nullptr) {
    if (waylandDisplay() != nullptr && QGuiApplication::focusWindow() == nullptr) {
      return false;
    }
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
    return true;
  }
  release();
  m_text = text;
  m_source = zwlr_data_control_manager_v1_create_data_source(m_manager);
  static constexpr zwlr_data_control_source_v1_listener listener = {send, cancelled};
  zwlr_data_control_source_v1_add_listener(m_source, &listener, this);
  for (const char* const type : textTypes) {
    zwlr_data_control_source_v1_offer(m_source, type);
  }
  zwlr_data_control_device_v1_set_selection(m_device, m_source);
  // The event loop would send it only with the next event.
  wl_display_flush(waylandDisplay());
  return true;
}

bool TextClipboard::isOwned() const {
  return m_source != nullptr || QGuiApplication::clipboard()->ownsClipboard();
}

void TextClipboard::offered(void* self, zwlr_data_control_device_v1* /*device*/,
                            zwlr_data_control_offer_v1* offer) {
  static constexpr zwlr_data_control_offer_v1_listener listener = {
      [](void*, zwlr_data_control_offer_v1*, const char*) {}};
  zwlr_data_control_offer_v1_add_listener(offer, &listener, self);
}

void TextClipboard::selected(void* /*self*/, zwlr_data_control_device_v1* /*device*/,
                             zwlr_data_control_offer_v1* offer) {
  // Other programs' texts are not read.
  if (offer != nullptr) {
    zwlr_data_control_offer_v1_destroy(offer);
  }
}

void TextClipboard::finished(void* self, zwlr_data_control_device_v1* device) {
  auto& clipboard = *static_cast<TextClipboard*>(self);
  zwlr_data_control_device_v1_destroy(device);
  clipboard.m_device = nullptr;
  clipboard.release();
}

void TextClipboard::send(void* self, zwlr_data_control_source_v1* /*source*/, const char* /*type*/,
                         int file) {
  // It fits into a pipe. A reader that is not ready for it, or has gone, gets nothing.
  const std::string& text = static_cast<TextClipboard*>(self)->m_text;
  ::fcntl(file, F_SETFL, O_NONBLOCK);
  [[maybe_unused]] const ssize_t written = ::write(file, text.data(), text.size());
  ::close(file);
}

void TextClipboard::cancelled(void* self, zwlr_data_control_source_v1* source) {
  auto& clipboard = *static_cast<TextClipboard*>(self);
  if (source == clipboard.m_source) {
    clipboard.release();
  }
}

void TextClipboard::release() {
  if (m_source != nullptr) {
    zwlr_data_control_source_v1_destroy(std::exchange(m_source, nullptr));
  }
}

} // namespace tidewell
