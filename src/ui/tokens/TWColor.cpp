#include "ui/tokens/TWColor.h"

namespace tidewell {

namespace {

QColor opaque(float red, float green, float blue) {
  return QColor::fromRgbF(red, green, blue, 1.0F);
}

} // namespace

const QColor& TWColor::green() {
  static const QColor color = opaque(0.133F, 0.773F, 0.369F);
  return color;
}

const QColor& TWColor::greenDim() {
  static const QColor color = opaque(0.039F, 0.239F, 0.118F);
  return color;
}

const QColor& TWColor::yellow() {
  static const QColor color = opaque(0.918F, 0.702F, 0.031F);
  return color;
}

const QColor& TWColor::yellowDim() {
  static const QColor color = opaque(0.239F, 0.188F, 0.031F);
  return color;
}

const QColor& TWColor::red() {
  static const QColor color = opaque(0.937F, 0.267F, 0.267F);
  return color;
}

const QColor& TWColor::redDim() {
  static const QColor color = opaque(0.239F, 0.039F, 0.039F);
  return color;
}

const QColor& TWColor::accent() {
  static const QColor color = opaque(0.231F, 0.51F, 0.965F);
  return color;
}

const QColor& TWColor::accentDim() {
  static const QColor color = opaque(0.118F, 0.227F, 0.373F);
  return color;
}

const QColor& TWColor::cyan() {
  static const QColor color = opaque(0.024F, 0.714F, 0.831F);
  return color;
}

const QColor& TWColor::purple() {
  static const QColor color = opaque(0.659F, 0.333F, 0.969F);
  return color;
}

const QColor& TWColor::surface() {
  static const QColor color = opaque(0.102F, 0.102F, 0.102F);
  return color;
}

const QColor& TWColor::surface2() {
  static const QColor color = opaque(0.141F, 0.141F, 0.141F);
  return color;
}

const QColor& TWColor::surface3() {
  static const QColor color = opaque(0.18F, 0.18F, 0.18F);
  return color;
}

const QColor& TWColor::borderSubtle() {
  static const QColor color = opaque(0.133F, 0.133F, 0.133F);
  return color;
}

const QColor& TWColor::text() {
  static const QColor color = opaque(0.91F, 0.91F, 0.91F);
  return color;
}

const QColor& TWColor::textSecondary() {
  static const QColor color = opaque(0.533F, 0.533F, 0.533F);
  return color;
}

const QColor& TWColor::textTertiary() {
  static const QColor color = opaque(0.333F, 0.333F, 0.333F);
  return color;
}

QColor withOpacity(QColor color, double opacity) {
  color.setAlphaF(static_cast<float>(opacity));
  return color;
}

} // namespace tidewell
