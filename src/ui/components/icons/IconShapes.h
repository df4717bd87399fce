#pragma once

#include <QPainterPath>

namespace tidewell::iconShapes {

/// Outlines to fill, each in a square of `iconEdge` by `iconEdge`.
[[nodiscard]] QPainterPath bolt();
[[nodiscard]] QPainterPath hourglass();
[[nodiscard]] QPainterPath copy();
[[nodiscard]] QPainterPath checkMark();
[[nodiscard]] QPainterPath barChart();
[[nodiscard]] QPainterPath gear();
[[nodiscard]] QPainterPath power();
[[nodiscard]] QPainterPath bell();
[[nodiscard]] QPainterPath drive();
[[nodiscard]] QPainterPath link();

/// The outline of a line drawn along the path with a round pen.
[[nodiscard]] QPainterPath penned(const QPainterPath& path, double width);

} // namespace tidewell::iconShapes
