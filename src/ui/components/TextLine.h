#pragma once

#include "ui/components/AccessibleWidgets.h"
#include "ui/components/FittedText.h"

namespace tidewell {

/// One line of text with any width and the height of its style, so that new text does not move
/// anything.
class TextLine final : public PaintedWidget {
  Q_OBJECT

public:
  explicit TextLine(TextStyle style, QWidget* parent = nullptr,
                    QAccessible::Role role = QAccessible::StaticText);

  /// Shows the text. It is read aloud as `spoken`, unless that is empty.
  void setText(const QString& text, const QString& spoken = {});
  [[nodiscard]] QString text() const { return m_text; }

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  [[nodiscard]] QString cutText() const override;

private:
  TextStyle m_style;
  QString m_text;
};

} // namespace tidewell
