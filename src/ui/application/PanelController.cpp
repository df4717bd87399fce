#include "ui/application/PanelController.h"

#include "ui/application/AbsenceNotice.h"
#include "ui/mirror/ResidentMirror.h"
#include "ui/panel/PopoverView.h"
#include "ui/placement/Display.h"

#include <chrono>
#include <utility>

namespace tidewell {
namespace {

// The longest time between a panel's loss of focus and the click that caused it.
constexpr std::chrono::milliseconds sameClick(250);

} // namespace

PanelController::PanelController(ResidentState& state, PanelActions actions)
    : m_state(state), m_actions(std::move(actions)) {}

PanelController::~PanelController() = default;

void PanelController::toggle(std::optional<QPoint> point) {
  if (isOpen()) {
    close();
  } else if (!m_sinceLeft.isValid() || m_sinceLeft.hasExpired(sameClick.count())) {
    open(point);
  }
}

void PanelController::open(std::optional<QPoint> point) {
  if (isOpen()) {
    return;
  }
  m_host = PanelWindow::make();
  connect(m_host.get(), &PanelWindow::dismissed, this, [this](PanelWindow::Dismissal how) {
    if (how == PanelWindow::Dismissal::elsewhere) {
      m_sinceLeft.start();
    }
    close();
  });
  auto* const view =
      new PopoverView({m_state.sampler, m_state.monitor, m_state.speedTest}, m_actions,
                      hasCompositing() ? Backdrop::translucent : Backdrop::opaque);
  new AbsenceNotice(m_state.isThere, AbsenceNotice::Edge::top, view);
  m_host->open(view, point);
  Q_EMIT opened();
}

void PanelController::close() {
  if (PanelWindow* const host = m_host.release()) {
    host->hide();
    host->deleteLater(); // it may be the caller
    Q_EMIT closed();
  }
}

} // namespace tidewell
