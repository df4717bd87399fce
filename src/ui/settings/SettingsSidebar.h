#pragma once

#include "ui/components/AccessibleWidgets.h"
#include "ui/components/Buttons.h"
#include "ui/components/Icon.h"
#include "ui/settings/SettingsSection.h"

namespace tidewell {

/// Selects a section. Shows its symbol and title.
class SidebarEntry final : public ChoiceButton {
  Q_OBJECT

public:
  SidebarEntry(Icon symbol, const QString& title, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  void paintGround(QPainter& painter) const;

  Icon m_symbol;
};

/// The list of sections. The first one is selected initially.
class SettingsSidebar final : public SpokenGroup {
  Q_OBJECT

public:
  /// In device-independent pixels.
  static constexpr int sidebarWidth = 160;

  explicit SettingsSidebar(QWidget* parent);

  /// Gives the selected section's entry the keyboard focus.
  void focusSelected();

Q_SIGNALS:
  void chosen(tidewell::SettingsSection section);

protected:
  void paintEvent(QPaintEvent* event) override;
};

} // namespace tidewell
