#pragma once

#include "ui/components/AccessibleWidgets.h"

#include <QColor>
#include <QString>

namespace tidewell {

/// A key at the left and its value at the right, on one baseline. A value that is too long is cut
/// in its middle and stands in full in the tool tip and in what is read aloud. Main thread.
class ValueRow final : public PaintedWidget {
  Q_OBJECT

public:
  /// What lies around the text, in device-independent pixels.
  struct Frame {
    int padding = 0;       // above and below
    int lineThickness = 0; // of the line below
  };

  ValueRow(QString key, Frame frame, QWidget* parent);

  void setValue(const QString& value, const QColor& color);

  [[nodiscard]] QString key() const { return m_key; }
  [[nodiscard]] QString value() const { return m_value; }
  [[nodiscard]] QColor color() const { return m_color; }

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  [[nodiscard]] QRect valueBox() const;
  void updateToolTip();

  QString m_key;
  Frame m_frame;
  QString m_value;
  QColor m_color;
};

} // namespace tidewell
