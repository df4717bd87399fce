#pragma once

#include <QColor>

namespace tidewell {

/// An opaque sRGB colour of components from 0 to 1.
[[nodiscard]] inline QColor opaqueColor(double red, double green, double blue) noexcept {
  const auto component = [](double value) { return static_cast<ushort>(qRound(value * 65535.0)); };
  return QColor::fromRgba64(component(red), component(green), component(blue));
}

/// The palette.
struct TWColor {
  /// Signals, each with a dark partner for its background.
  static inline const QColor green = opaqueColor(0.133, 0.773, 0.369);
  static inline const QColor greenDim = opaqueColor(0.039, 0.239, 0.118);
  static inline const QColor yellow = opaqueColor(0.918, 0.702, 0.031);
  static inline const QColor yellowDim = opaqueColor(0.239, 0.188, 0.031);
  static inline const QColor red = opaqueColor(0.937, 0.267, 0.267);
  static inline const QColor redDim = opaqueColor(0.239, 0.039, 0.039);
  /// Selection and highlighted strips.
  static inline const QColor accent = opaqueColor(0.231, 0.51, 0.965);
  static inline const QColor accentDim = opaqueColor(0.118, 0.227, 0.373);
  /// Further series of a chart.
  static inline const QColor cyan = opaqueColor(0.024, 0.714, 0.831);
  static inline const QColor purple = opaqueColor(0.659, 0.333, 0.969);
  /// Backgrounds, darkest first.
  static inline const QColor surface = opaqueColor(0.102, 0.102, 0.102);
  static inline const QColor surface2 = opaqueColor(0.141, 0.141, 0.141);
  static inline const QColor surface3 = opaqueColor(0.18, 0.18, 0.18);
  static inline const QColor borderSubtle = opaqueColor(0.133, 0.133, 0.133);
  /// Text, brightest first.
  static inline const QColor text = opaqueColor(0.91, 0.91, 0.91);
  static inline const QColor textSecondary = opaqueColor(0.533, 0.533, 0.533);
  static inline const QColor textTertiary = opaqueColor(0.333, 0.333, 0.333);
};

/// The colour with this opacity, from 0 to 1.
[[nodiscard]] inline QColor withOpacity(QColor color, double opacity) {
  color.setAlphaF(static_cast<float>(opacity));
  return color;
}

} // namespace tidewell
