#pragma once

#include <QRectF>
#include <QString>
#include <QWidget>

#include <vector>

namespace tidewell::test {

/// A piece of text as a widget draws it.
struct DrawnText {
  QString text;
  /// From the ascent to the descent, in the widget's coordinates.
  QRectF box;
};

/// The texts that a widget draws itself, without its children.
[[nodiscard]] std::vector<DrawnText> drawnTexts(QWidget& widget);

} // namespace tidewell::test
