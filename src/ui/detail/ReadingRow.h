#pragma once

#include "sampling/NetworkSnapshot.h"
#include "ui/components/PaintedWidget.h"

#include <array>

namespace tidewell {

/// One sample as a line of text. Main thread.
class ReadingRow final : public PaintedWidget {
  Q_OBJECT

public:
  explicit ReadingRow(QWidget* parent);

  void setSnapshot(const NetworkSnapshot& snapshot);

  /// Time of day, download, upload and latency, as shown.
  [[nodiscard]] const std::array<QString, 4>& texts() const { return m_texts; }

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  std::array<QString, 4> m_texts;
};

} // namespace tidewell
