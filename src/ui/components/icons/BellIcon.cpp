#include "ui/components/icons/IconShapes.h"

namespace tidewell {

QPainterPath iconShapes::bell() {
  QPainterPath path({5.5, 0.2});
  path.cubicTo({6.1, 0.2}, {6.5, 0.6}, {6.5, 1.2});
  path.cubicTo({8.3, 1.7}, {9.0, 3.2}, {9.0, 5.0});
  path.cubicTo({9.0, 6.9}, {9.5, 7.4}, {10.2, 8.1});
  path.quadTo(10.5, 8.9, 9.7, 8.9);
  path.lineTo(1.3, 8.9);
  path.quadTo(0.5, 8.9, 0.8, 8.1);
  path.cubicTo({1.5, 7.4}, {2.0, 6.9}, {2.0, 5.0});
  path.cubicTo({2.0, 3.2}, {2.7, 1.7}, {4.5, 1.2});
  path.cubicTo({4.5, 0.6}, {4.9, 0.2}, {5.5, 0.2});
  path.closeSubpath();
  // The clapper.
  path.moveTo(3.9, 9.6);
  path.lineTo(7.1, 9.6);
  path.cubicTo({6.9, 10.4}, {6.3, 10.9}, {5.5, 10.9});
  path.cubicTo({4.7, 10.9}, {4.1, 10.4}, {3.9, 9.6});
  path.closeSubpath();
  return path;
}

} // namespace tidewell
