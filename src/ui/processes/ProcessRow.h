#pragma once

#include "base/Translation.h"
#include "processes/ProcessUsage.h"
#include "ui/components/AccessibleWidgets.h"

#include <QColor>
#include <QRect>

#include <array>
#include <cstddef>

namespace tidewell {

/// A column of the process table.
struct ProcessColumn {
  const char* title;
  /// In pixels. 0: the remaining width.
  int width;
  Qt::Alignment alignment;
};

/// The columns, left to right.
inline constexpr std::array<ProcessColumn, 5> processColumns = {
    {{translatable("Process"), 0, Qt::AlignLeft},
     {translatable("Download"), 90, Qt::AlignRight},
     {translatable("Upload"), 90, Qt::AlignRight},
     {translatable("Total"), 80, Qt::AlignRight},
     {translatable("Usage"), 80, Qt::AlignLeft}}};

/// Between two columns, in pixels.
inline constexpr int processColumnGap = 16;

/// The box of a column in a row.
[[nodiscard]] QRect processColumnBox(std::size_t column, const QRect& row);

/// The colour of a row's initial and bar. Repeats after six rows.
[[nodiscard]] const QColor& processBarColor(std::size_t row);

/// The column titles of the process table, on an opaque background.
class ProcessListHeader final : public PaintedWidget {
  Q_OBJECT

public:
  explicit ProcessListHeader(QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  [[nodiscard]] QString cutText() const override;

private:
  void headerCell(QPainter& painter, std::size_t column) const;
};

/// A process with its initial, rates, total and a bar for its share.
class ProcessRow final : public PaintedWidget {
  Q_OBJECT

public:
  /// The colour depends on the row's index, not on the process.
  ProcessRow(std::size_t index, QWidget* parent);

  void setUsage(const ProcessUsage& usage);

  [[nodiscard]] QString name() const { return m_name; }
  [[nodiscard]] QString initial() const { return m_initial; }
  /// Download, upload and total, as shown.
  [[nodiscard]] const std::array<QString, 3>& figures() const { return m_figures; }
  /// The filled part of the bar, in the row's coordinates.
  [[nodiscard]] QRectF bar() const;

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  [[nodiscard]] QString cutText() const override;

private:
  [[nodiscard]] QRect track() const;
  [[nodiscard]] QRect nameBox() const;
  void paintProgram(QPainter& painter) const;
  void paintFigures(QPainter& painter) const;
  void paintBar(QPainter& painter) const;

  const QColor& m_color;
  ProcessUsage m_usage;
  QString m_name;
  QString m_initial;
  std::array<QString, 3> m_figures;
};

} // namespace tidewell
