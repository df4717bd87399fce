#pragma once

#include "ui/components/ChoiceButton.h"

namespace tidewell {

/// Chooses one of the chart's spans of time. Main thread.
class RangeButton final : public ChoiceButton {
  Q_OBJECT

public:
  using ChoiceButton::ChoiceButton;

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
};

} // namespace tidewell
