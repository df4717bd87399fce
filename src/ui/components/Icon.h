#pragma once

#include <QColor>
#include <QPainter>

namespace tidewell {

/// The icons of the windows.
enum class Icon { bolt, hourglass, copy, checkMark, barChart, gear, power, bell, drive, link };

/// Width and height of an icon in device-independent pixels.
constexpr int iconEdge = 11;

/// Draws the icon. Expects an antialiasing painter.
void drawIcon(QPainter& painter, Icon icon, QPointF topLeft, const QColor& color);

} // namespace tidewell
