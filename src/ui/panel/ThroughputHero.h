#pragma once

#include "sampling/NetworkStatus.h"
#include "ui/components/ViewTime.h"

#include <QWidget>

#include <cstdint>

namespace tidewell {

class StatusBadge;
class TextLine;

/// The current download rate in large type, the same in megabits, and the status. Main thread.
class ThroughputHero final : public QWidget {
  Q_OBJECT

public:
  ThroughputHero(const ViewTime& time, QWidget* parent);

  void setDownload(std::int64_t bytesPerSec);
  void setStatus(NetworkStatus status);

private:
  void layOut();

  // Children.
  TextLine* m_title;
  TextLine* m_rate;
  TextLine* m_megabits;
  StatusBadge* m_badge;
};

} // namespace tidewell
