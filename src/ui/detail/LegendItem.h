#pragma once

#include "ui/components/PaintedWidget.h"

#include <QColor>
#include <QString>

namespace tidewell {

/// Names a line of a chart beside a piece of its colour. Main thread.
class LegendItem final : public PaintedWidget {
  Q_OBJECT

public:
  LegendItem(QString label, QColor color, QWidget* parent);

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  QString m_label;
  QColor m_color;
};

} // namespace tidewell
