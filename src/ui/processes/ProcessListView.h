#pragma once

#include "processes/ProcessUsage.h"
#include "ui/components/AccessibleWidgets.h"

#include <vector>

namespace tidewell {

class ProcessListHeader;
class ProcessRow;
class TextLine;

/// The table of programs that use the network, in the order given. Inside of a scroll area its
/// header stays in sight as long as one of its rows does. Main thread.
class ProcessListView final : public SpokenGroup {
  Q_OBJECT

public:
  explicit ProcessListView(QWidget* parent = nullptr);

  /// Changes only the rows that show something new.
  void setProcesses(const std::vector<ProcessUsage>& processes);

  /// The rows shown, top to bottom.
  [[nodiscard]] std::vector<const ProcessRow*> rows() const;

protected:
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

private:
  void watchScrolling();
  void layOut();
  void placeHeader();
  [[nodiscard]] int scrolledAway() const;

  // Children.
  ProcessListHeader* m_header;
  QWidget* m_body;
  TextLine* m_empty;
  std::vector<ProcessRow*> m_rows; // those not needed are hidden
  QWidget* m_viewport = nullptr;   // of the scroll area around, if there is one
};

} // namespace tidewell
