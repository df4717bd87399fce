#pragma once

#include "ui/components/PaintedWidget.h"

#include <QString>

namespace tidewell {

/// A key at the left and its value at the right. A value that is too long is cut in its middle and
/// stands in full in the tool tip and in what is read aloud. Main thread.
class PanelRow final : public PaintedWidget {
  Q_OBJECT

public:
  PanelRow(QString key, QWidget* parent);

  void setValue(const QString& value);
  [[nodiscard]] QString key() const { return m_key; }
  [[nodiscard]] QString value() const { return m_value; }

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  [[nodiscard]] QRect valueBox() const;
  void updateToolTip();

  QString m_key;
  QString m_value;
};

} // namespace tidewell
