#include "ui/processes/ProcessColumns.h"

#include "ui/tokens/TWColor.h"

#include <algorithm>

namespace tidewell {

QRect processColumnBox(std::size_t column, const QRect& row) {
  int right = row.right() + 1;
  for (std::size_t index = processColumns.size() - 1; index > column; --index) {
    right -= processColumns.at(index).width + processColumnGap;
  }
  const int fixed = processColumns.at(column).width;
  const int width = fixed > 0 ? fixed : std::max(0, right - row.left());
  return {right - width, row.top(), width, row.height()};
}

const QColor& processBarColor(std::size_t row) {
  static const std::array<const QColor*, 6> barColors = {&TWColor::accent(), &TWColor::green(),
                                                         &TWColor::purple(), &TWColor::cyan(),
                                                         &TWColor::yellow(), &TWColor::red()};
  return *barColors.at(row % barColors.size());
}

} // namespace tidewell
