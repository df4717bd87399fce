#include "app/FallbackItem.h"

#include <utility>

namespace tidewell {

namespace {

// Panels start after the programs of the session, on a slow machine many seconds later.
constexpr Seconds patience = 20.0;

} // namespace

FallbackItem::FallbackItem(WorkQueue& main, std::function<void(bool isWanted)> show)
    : m_main(main), m_show(std::move(show)) {
  setTaken(false);
}

void FallbackItem::setTaken(bool isTaken) {
  if (isTaken) {
    m_patience.reset();
    if (std::exchange(m_isShown, false)) {
      m_show(false);
    }
  } else if (!m_isShown && !m_patience) {
    m_patience = m_main.repeat(patience, 0.0, [this] {
      m_isShown = true;
      m_show(true);
    });
  }
}

} // namespace tidewell
