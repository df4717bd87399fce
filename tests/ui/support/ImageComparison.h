#pragma once

#include <QImage>
#include <QString>
#include <QWidget>

namespace tidewell::test {

/// How two pictures differ.
struct ImageDifference {
  /// Pixels of which a channel differs by more than the tolerance; all of them if the sizes differ.
  qsizetype pixels = 0;
  /// Black where they are alike, white where they are not.
  QImage picture;
};

/// The largest difference of a channel, of 255, that counts as alike.
constexpr int channelTolerance = 2;

[[nodiscard]] ImageDifference difference(const QImage& expected, const QImage& actual);

/// The widget and its children as drawn on a screen with so many pixels to the unit.
[[nodiscard]] QImage picture(QWidget& widget, int scale = 1);

/// Compares a picture with the stored one of this name. Returns what is wrong, and nothing if all
/// is well; writes the picture and the difference where the message says. With
/// TIDEWELL_UPDATE_GOLDEN in the environment, stores the picture instead.
[[nodiscard]] QString faultOf(const QString& name, const QImage& actual);

} // namespace tidewell::test
