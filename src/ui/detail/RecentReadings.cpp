#include "ui/detail/RecentReadings.h"

#include "ui/detail/ReadingRow.h"

#include <QVBoxLayout>

namespace tidewell {

RecentReadings::RecentReadings(QWidget* parent)
    : SpokenGroup(QAccessible::List, QStringLiteral("Recent Readings"), parent) {
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  for (ReadingRow*& row : m_rows) {
    row = new ReadingRow(this);
    column->addWidget(row);
  }
}

void RecentReadings::setSnapshots(const SnapshotList& snapshots) {
  auto snapshot = snapshots.rbegin();
  for (ReadingRow* row : m_rows) {
    row->setVisible(snapshot != snapshots.rend());
    if (snapshot != snapshots.rend()) {
      row->setSnapshot(**snapshot);
      ++snapshot;
    }
  }
}

} // namespace tidewell
