#include "ui/detail/DiagnosticRow.h"

#include <utility>

namespace tidewell {

DiagnosticRow::DiagnosticRow(QString label, QWidget* parent)
    : ValueRow(std::move(label), {8, 1}, parent) {}

void DiagnosticRow::setValue(const QString& value, const QColor& color) { show(value, color); }

} // namespace tidewell
