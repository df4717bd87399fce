#include "ui/components/PanelRow.h"

#include "ui/tokens/TWColor.h"

#include <utility>

namespace tidewell {

PanelRow::PanelRow(QString key, QWidget* parent) : ValueRow(std::move(key), {6, 0}, parent) {}

void PanelRow::setValue(const QString& value) { show(value, TWColor::text()); }

} // namespace tidewell
