#pragma once

#include <QWidget>

#include <array>

namespace tidewell {

struct ConnectionInfo;
class PanelRow;

/// The details of the connection, one row each. Main thread.
class ConnectionSection final : public QWidget {
  Q_OBJECT

public:
  explicit ConnectionSection(QWidget* parent);

  /// Changes only the rows that show something new.
  void setInfo(const ConnectionInfo& info);

private:
  // Children, in reading order.
  std::array<PanelRow*, 5> m_rows;
};

} // namespace tidewell
