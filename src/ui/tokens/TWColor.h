#pragma once

#include <QColor>

namespace tidewell {

/// The palette: constant, opaque sRGB colours, each made at its first use. Any thread.
struct TWColor {
  /// Signals, each with the dark partner that goes behind it.
  [[nodiscard]] static const QColor& green();
  [[nodiscard]] static const QColor& greenDim();
  [[nodiscard]] static const QColor& yellow();
  [[nodiscard]] static const QColor& yellowDim();
  [[nodiscard]] static const QColor& red();
  [[nodiscard]] static const QColor& redDim();
  /// Selection and highlighted strips.
  [[nodiscard]] static const QColor& accent();
  [[nodiscard]] static const QColor& accentDim();
  /// Further series of a chart.
  [[nodiscard]] static const QColor& cyan();
  [[nodiscard]] static const QColor& purple();
  /// Grounds, darkest first.
  [[nodiscard]] static const QColor& surface();
  [[nodiscard]] static const QColor& surface2();
  [[nodiscard]] static const QColor& surface3();
  [[nodiscard]] static const QColor& borderSubtle();
  /// Text, brightest first.
  [[nodiscard]] static const QColor& text();
  [[nodiscard]] static const QColor& textSecondary();
  [[nodiscard]] static const QColor& textTertiary();
};

/// The colour at another opacity, from 0 to 1.
[[nodiscard]] QColor withOpacity(QColor color, double opacity);

} // namespace tidewell
