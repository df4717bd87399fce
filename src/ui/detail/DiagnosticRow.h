#pragma once

#include "ui/components/ValueRow.h"

namespace tidewell {

/// A row of the diagnosis, whose value has a colour that judges it. Main thread.
class DiagnosticRow final : public ValueRow {
  Q_OBJECT

public:
  DiagnosticRow(QString label, QWidget* parent);

  void setValue(const QString& value, const QColor& color);
};

} // namespace tidewell
