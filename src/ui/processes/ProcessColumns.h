#pragma once

#include <QColor>
#include <QRect>

#include <array>
#include <cstddef>

namespace tidewell {

/// A column of the process table.
struct ProcessColumn {
  const char* title;
  /// In pixels; 0: all that the others leave.
  int width;
  Qt::Alignment alignment;
};

/// The columns, left to right.
inline constexpr std::array<ProcessColumn, 5> processColumns = {{{"Process", 0, Qt::AlignLeft},
                                                                 {"Download", 90, Qt::AlignRight},
                                                                 {"Upload", 90, Qt::AlignRight},
                                                                 {"Total", 80, Qt::AlignRight},
                                                                 {"Usage", 80, Qt::AlignLeft}}};

/// Between two columns, in pixels.
inline constexpr int processColumnGap = 16;

/// Where a column lies in a row.
[[nodiscard]] QRect processColumnBox(std::size_t column, const QRect& row);

/// The colour of a row's initial and bar; after six rows they begin again.
[[nodiscard]] const QColor& processBarColor(std::size_t row);

} // namespace tidewell
