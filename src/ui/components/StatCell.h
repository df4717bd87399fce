#pragma once

#include "ui/components/AccessibleWidgets.h"

#include <QColor>
#include <QPainterPath>
#include <QString>

namespace tidewell {

/// A labelled figure.
struct StatFigure {
  /// Name of the figure, as it is stored; shown in upper case.
  QString label;
  /// The figure, formatted.
  QString value;
  /// Shown after the figure; may be empty.
  QString unit;
  QColor valueColor;

  friend bool operator==(const StatFigure&, const StatFigure&) = default;
};

/// Shows a labelled figure on a ground of its own, with square corners. Main thread.
class StatCell final : public PaintedWidget {
  Q_OBJECT

public:
  explicit StatCell(QWidget* parent = nullptr);

  void setFigure(const StatFigure& figure);
  [[nodiscard]] const StatFigure& figure() const { return m_figure; }

  /// The shape, in the cell's coordinates, that the container cuts the ground to. Empty: all of it.
  void setClip(const QPainterPath& clip);

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  [[nodiscard]] QRect valueBox() const;
  void paintGround(QPainter& painter) const;
  void updateToolTip();

  StatFigure m_figure;
  QPainterPath m_clip;
};

} // namespace tidewell
