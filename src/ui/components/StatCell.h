#pragma once

#include "ui/components/AccessibleWidgets.h"

#include <QColor>
#include <QString>

namespace tidewell {

/// A figure with a label.
struct StatFigure {
  /// Shown in upper case.
  QString label;
  /// The figure, formatted.
  QString value;
  /// Shown after the value; may be empty.
  QString unit;
  QColor valueColor;

  friend bool operator==(const StatFigure&, const StatFigure&) = default;
};

/// Shows a figure with its label on a background with square corners.
class StatCell final : public PaintedWidget {
  Q_OBJECT

public:
  explicit StatCell(QWidget* parent = nullptr);

  void setFigure(const StatFigure& figure);
  [[nodiscard]] const StatFigure& figure() const { return m_figure; }

  /// Leaves the background to the parent, which gives it another shape.
  void leaveGround() { m_hasGround = false; }

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  [[nodiscard]] QString cutText() const override;

private:
  [[nodiscard]] QRect valueBox() const;

  StatFigure m_figure;
  bool m_hasGround = true;
};

} // namespace tidewell
