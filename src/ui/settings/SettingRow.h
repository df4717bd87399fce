#pragma once

#include <QWidget>

namespace tidewell {

/// A setting: its title over its description at the left, its control at the right, a line below.
/// Main thread.
class SettingRow final : public QWidget {
  Q_OBJECT

public:
  /// Takes the control, which is named after the setting.
  SettingRow(const QString& title, const QString& description, QWidget* control,
             QWidget* parent = nullptr);
};

} // namespace tidewell
