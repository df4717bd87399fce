#pragma once

#include "ui/components/SpokenGroup.h"
#include "ui/settings/SettingsSection.h"

namespace tidewell {

/// The sections one below the other, of which one is chosen: the first at the beginning. Main
/// thread.
class SettingsSidebar final : public SpokenGroup {
  Q_OBJECT

public:
  /// In device-independent pixels.
  static constexpr int sidebarWidth = 160;

  explicit SettingsSidebar(QWidget* parent);

Q_SIGNALS:
  void chosen(tidewell::SettingsSection section);

protected:
  void paintEvent(QPaintEvent* event) override;
};

} // namespace tidewell
