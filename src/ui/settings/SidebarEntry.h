#pragma once

#include "ui/components/ChoiceButton.h"
#include "ui/components/icons/Icon.h"

namespace tidewell {

/// Chooses one section: its symbol and its title. Main thread.
class SidebarEntry final : public ChoiceButton {
  Q_OBJECT

public:
  SidebarEntry(Icon symbol, const QString& title, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  void paintGround(QPainter& painter) const;

  Icon m_symbol;
};

} // namespace tidewell
