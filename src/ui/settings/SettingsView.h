#pragma once

#include "ui/components/AccessibleWidgets.h"
#include "ui/components/ViewTime.h"
#include "ui/settings/SettingsSection.h"

class QStackedWidget;

namespace tidewell {

class AppSettings;
class PreferencesStore;
class SettingsSidebar;
class UnsavedNotice;
class UnsavedSettings;

/// The settings: a sidebar with the sections, the scrollable content of the selected one, and below
/// it why changes are not stored, if so. Created for each opening: what could not be stored by then
/// is given up when it is closed.
class SettingsView final : public SpokenGroup {
  Q_OBJECT

public:
  using Section = SettingsSection;

  /// In device-independent pixels.
  static constexpr QSize defaultSize{640, 480};
  static constexpr QSize leastSize{540, 320};

  /// Borrows the preferences and their store, whose changes are observed.
  SettingsView(AppSettings& settings, PreferencesStore& store,
               const ViewTime& time = ViewTime::real(), QWidget* parent = nullptr);
  ~SettingsView() override;

  [[nodiscard]] Section selectedSection() const { return m_selectedSection; }

  [[nodiscard]] QSize sizeHint() const override { return defaultSize; }

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  void layOut();
  void select(Section section);

  Section m_selectedSection = Section::general;
  // Children.
  SettingsSidebar* m_sidebar;
  QStackedWidget* m_pages;
  UnsavedNotice* m_notice;
  UnsavedSettings* m_unsaved;
};

} // namespace tidewell
