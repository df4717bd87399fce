#pragma once

#include "ui/components/AccessibleWidgets.h"
#include "ui/settings/SettingsSection.h"

class QStackedWidget;

namespace tidewell {

class AppSettings;
class PreferencesStore;
class SettingsSidebar;

/// The settings: a sidebar with the sections and the chosen one's controls, which scroll. A window
/// or a part of one. Made anew for every opening. Main thread.
class SettingsView final : public SpokenGroup {
  Q_OBJECT

public:
  using Section = SettingsSection;

  /// In device-independent pixels.
  static constexpr QSize defaultSize{640, 480};
  static constexpr QSize leastSize{540, 320};

  /// Borrows the preferences and the store that they are attached to, which tells of changes that
  /// others make.
  SettingsView(AppSettings& settings, PreferencesStore& store, QWidget* parent = nullptr);
  ~SettingsView() override;

  [[nodiscard]] Section selectedSection() const { return m_selectedSection; }

  [[nodiscard]] QSize sizeHint() const override { return defaultSize; }

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  void select(Section section);

  Section m_selectedSection = Section::general;
  // Children.
  SettingsSidebar* m_sidebar;
  QStackedWidget* m_pages;
};

} // namespace tidewell
