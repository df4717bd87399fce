#include "ui/components/icons/IconShapes.h"

namespace tidewell {

QPainterPath iconShapes::checkMark() {
  QPainterPath path({1.4, 6.0});
  path.lineTo(4.2, 8.9);
  path.lineTo(9.6, 2.2);
  return penned(path, 1.5);
}

} // namespace tidewell
