#pragma once

#include "base/Observers.h"
#include "processes/TrackerState.h"

#include <QWidget>

namespace tidewell {

class ProcessListView;
class TextLine;

/// All programs that use the network. Main thread.
class ProcessesTab final : public QWidget {
  Q_OBJECT

public:
  /// Borrows the state.
  explicit ProcessesTab(TrackerState& tracker, QWidget* parent = nullptr);

private:
  void showProcesses(const std::vector<ProcessUsage>& processes);

  // Children, in reading order; either the hint or the list is shown.
  TextLine* m_title;
  TextLine* m_empty;
  ProcessListView* m_list;
  Subscription m_subscription; // ended before the children go
};

} // namespace tidewell
