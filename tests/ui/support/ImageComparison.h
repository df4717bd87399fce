#pragma once

#include <QColor>
#include <QImage>
#include <QRect>
#include <QString>
#include <QWidget>

#include <functional>

namespace tidewell::test {

/// The difference of two pictures.
struct ImageDifference {
  /// The number of pixels with a channel that differs by more than the tolerance. All pixels if the
  /// sizes differ.
  qsizetype pixels = 0;
  /// Black where the pictures are equal, otherwise white.
  QImage picture;
};

/// Channels that differ by at most this count as equal. Of 255.
constexpr int channelTolerance = 2;

[[nodiscard]] ImageDifference difference(const QImage& expected, const QImage& actual);

/// Counts the pixels of a box that the predicate accepts.
[[nodiscard]] int pixelsWhere(const QImage& image, const QRect& box,
                              const std::function<bool(const QColor&)>& isThere);

/// Draws the widget and its children with this device pixel ratio.
[[nodiscard]] QImage picture(QWidget& widget, double scale = 1.0);

/// Compares a picture with the stored one of this name. Returns an error message, or an empty
/// string if they are equal. The message names the files with the picture and the difference. With
/// TIDEWELL_UPDATE_GOLDEN in the environment, stores the picture instead.
[[nodiscard]] QString faultOf(const QString& name, const QImage& actual);

} // namespace tidewell::test
