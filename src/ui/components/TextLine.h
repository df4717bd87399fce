#pragma once

#include "ui/components/AccessibleWidgets.h"
#include "ui/components/FittedText.h"

namespace tidewell {

/// One line of text that takes the width it is given and always the height of its style: whatever
/// the text becomes, nothing around it moves. Main thread.
class TextLine final : public PaintedWidget {
  Q_OBJECT

public:
  explicit TextLine(TextStyle style, QWidget* parent = nullptr,
                    QAccessible::Role role = QAccessible::StaticText);

  /// Shows the text, and reads it aloud as `spoken`, or as it stands when that is empty.
  void setText(const QString& text, const QString& spoken = {});
  [[nodiscard]] QString text() const { return m_text; }

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  void updateToolTip();

  TextStyle m_style;
  QString m_text;
};

} // namespace tidewell
