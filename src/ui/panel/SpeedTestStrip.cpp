#include "ui/panel/SpeedTestStrip.h"

#include "ui/panel/ResultLine.h"
#include "ui/panel/RunningLine.h"

#include <QVBoxLayout>

namespace tidewell {

SpeedTestStrip::SpeedTestStrip(const ViewTime& time, QWidget* parent)
    : QWidget(parent), m_running(new RunningLine(time, this)), m_result(new ResultLine(this)) {
  setAccessibleName(QStringLiteral("Speed test"));
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(m_running);
  column->addWidget(m_result);
  setState(false, std::nullopt);
}

void SpeedTestStrip::setState(bool isRunning, const std::optional<SpeedTestResult>& result) {
  if (result) {
    m_result->setResult(*result);
  }
  m_running->setVisible(isRunning);
  m_result->setVisible(!isRunning && result.has_value());
  setVisible(isRunning || result.has_value());
}

} // namespace tidewell
