#pragma once

#include "ui/detail/DiagnosticGroup.h"

#include <array>

namespace tidewell {

struct ConnectionInfo;

/// Whether there is a connection, and which. Main thread.
class ConnectionGroup final : public DiagnosticGroup {
  Q_OBJECT

public:
  explicit ConnectionGroup(QWidget* parent);

  void setConnected(bool isConnected);
  void setInfo(const ConnectionInfo& info);

private:
  // Children.
  DiagnosticRow* m_status;
  std::array<DiagnosticRow*, 6> m_details;
};

} // namespace tidewell
