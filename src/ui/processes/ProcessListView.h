#pragma once

#include "processes/ProcessUsage.h"
#include "ui/components/AccessibleWidgets.h"

#include <vector>

namespace tidewell {

class ProcessListHeader;
class ProcessRow;
class TextLine;

/// The table of processes that use the network, in the given order. In a scroll area its header
/// stays visible while any row is.
class ProcessListView final : public SpokenGroup {
  Q_OBJECT

public:
  explicit ProcessListView(QWidget* parent = nullptr);

  /// Repaints only rows that changed.
  void setProcesses(const std::vector<ProcessUsage>& processes);

  /// The visible rows, from top to bottom.
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
  std::vector<ProcessRow*> m_rows; // unused ones are hidden
  QWidget* m_viewport = nullptr;   // of the enclosing scroll area, if any
};

} // namespace tidewell
