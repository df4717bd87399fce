#include "ui/placement/OutsideClicks.h"

#include "ui/placement/Display.h"

#include <QCursor>
#include <QGuiApplication>
#include <QWidget>

#include <cstdint>

#include <xcb/xinput.h>

namespace tidewell {
namespace {

// Higher numbers are wheel steps.
constexpr std::uint32_t lastButton = 3;

/// Selects raw button events of all windows, or none.
void select(xcb_connection_t* connection, std::uint32_t events) {
  const struct {
    xcb_input_event_mask_t head;
    std::uint32_t events;
  } mask = {{XCB_INPUT_DEVICE_ALL_MASTER, 1}, events};
  const auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection));
  xcb_input_xi_select_events(connection, screen.data->root, 1, &mask.head);
  xcb_flush(connection);
}

/// Returns the button event, or null for another event.
const xcb_input_raw_button_press_event_t* buttonEvent(xcb_connection_t* connection,
                                                      const void* message) {
  const auto* const event = static_cast<const xcb_input_raw_button_press_event_t*>(message);
  const auto* const extension = xcb_get_extension_data(connection, &xcb_input_id);
  const bool isButton = (event->response_type & 0x7FU) == XCB_GE_GENERIC &&
                        event->extension == extension->major_opcode &&
                        (event->event_type == XCB_INPUT_RAW_BUTTON_PRESS ||
                         event->event_type == XCB_INPUT_RAW_BUTTON_RELEASE) &&
                        event->detail <= lastButton;
  return isButton ? event : nullptr;
}

} // namespace

OutsideClicks::OutsideClicks(const QWidget& window) : m_window(window) {
  xcb_connection_t* const connection = xConnection();
  if (connection == nullptr || xcb_get_extension_data(connection, &xcb_input_id)->present == 0) {
    return;
  }
  m_connection = connection;
  select(m_connection,
         XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE);
  QCoreApplication::instance()->installNativeEventFilter(this);
}

OutsideClicks::~OutsideClicks() {
  if (m_connection != nullptr) {
    QCoreApplication::instance()->removeNativeEventFilter(this);
    select(m_connection, 0);
  }
}

bool OutsideClicks::nativeEventFilter(const QByteArray& /*type*/, void* message,
                                      qintptr* /*result*/) {
  if (const auto* const event = buttonEvent(m_connection, message)) {
    const bool wasPressed = m_isPressed;
    m_isPressed = event->event_type == XCB_INPUT_RAW_BUTTON_PRESS &&
                  !m_window.geometry().contains(QCursor::pos());
    if (wasPressed && event->event_type == XCB_INPUT_RAW_BUTTON_RELEASE) {
      Q_EMIT clicked();
    }
  }
  return false;
}

} // namespace tidewell
