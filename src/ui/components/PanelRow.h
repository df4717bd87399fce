#pragma once

#include "ui/components/ValueRow.h"

namespace tidewell {

/// A row of the panel. Main thread.
class PanelRow final : public ValueRow {
  Q_OBJECT

public:
  PanelRow(QString key, QWidget* parent);

  void setValue(const QString& value);
};

} // namespace tidewell
