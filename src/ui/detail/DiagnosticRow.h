#pragma once

#include "ui/components/PaintedWidget.h"

#include <QColor>
#include <QString>

namespace tidewell {

/// A label at the left, its value at the right in a colour that judges it, and a thin line below.
/// A value that is too long is cut in its middle and stands in full in the tool tip and in what is
/// read aloud. Main thread.
class DiagnosticRow final : public PaintedWidget {
  Q_OBJECT

public:
  DiagnosticRow(QString label, QWidget* parent);

  void setValue(const QString& value, const QColor& color);
  [[nodiscard]] QString label() const { return m_label; }
  [[nodiscard]] QString value() const { return m_value; }
  [[nodiscard]] QColor color() const { return m_color; }

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  [[nodiscard]] QRect valueBox() const;
  void updateToolTip();

  QString m_label;
  QString m_value;
  QColor m_color;
};

} // namespace tidewell
