#include "ui/detail/ProcessesTab.h"

#include "ui/components/TextLine.h"
#include "ui/detail/DetailStyles.h"
#include "ui/processes/ProcessListView.h"

#include <QVBoxLayout>

namespace tidewell {

ProcessesTab::ProcessesTab(TrackerState& tracker, QWidget* parent)
    : QWidget(parent), m_title(makeHeading(QStringLiteral("Active Processes"), this)),
      m_empty(makeHint(QStringLiteral("No active network processes detected."), this)),
      m_list(new ProcessListView(this)) {
  auto* const column = new QVBoxLayout(this);
  column->setSpacing(detailGrid::headingSpacing);
  column->addWidget(m_title);
  column->addWidget(m_empty);
  column->addWidget(m_list);
  column->addStretch();
  m_subscription = tracker.processes.subscribe(
      [this](const std::vector<ProcessUsage>& processes) { showProcesses(processes); });
}

void ProcessesTab::showProcesses(const std::vector<ProcessUsage>& processes) {
  m_list->setProcesses(processes);
  m_list->setVisible(!processes.empty());
  m_empty->setVisible(processes.empty());
}

} // namespace tidewell
