#pragma once

#include "ui/components/AccessibleWidgets.h"

#include <QColor>
#include <QString>

class QPainter;

namespace tidewell {

/// A key at the left and its value at the right, on one baseline. A value that is too long
/// shrinks, and if it still is, is cut in the middle; the tool tip and the accessible name have all
/// of it. With the focus it appears selected.
class ValueRow final : public PaintedWidget {
  Q_OBJECT

public:
  /// The space around the text, in device-independent pixels.
  struct Frame {
    int padding = 0;       // above and below
    int lineThickness = 0; // of the line below
  };

  ValueRow(QString key, Frame frame, QWidget* parent);

  /// Shows the value. `meaning` says to assistive technology what the colour says, if anything.
  void setValue(const QString& value, const QColor& color, const QString& meaning = {});

  [[nodiscard]] QString key() const { return m_key; }
  [[nodiscard]] QString value() const { return m_value; }
  [[nodiscard]] QColor color() const { return m_color; }

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  [[nodiscard]] QString cutText() const override;

private:
  [[nodiscard]] QRect valueBox() const;
  void paintSelection(QPainter& painter) const;

  QString m_key;
  Frame m_frame;
  QString m_value;
  QColor m_color;
};

} // namespace tidewell
