#pragma once

#include "ui/components/AccessibleWidgets.h"

#include <QString>

namespace tidewell {

/// A line that says why settings are not stored. It takes no space while it is hidden.
class UnsavedNotice final : public PaintedWidget {
  Q_OBJECT

public:
  explicit UnsavedNotice(QWidget* parent);

  /// Shows the reason, or hides the line if it is empty.
  void setReason(const QString& reason);

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  [[nodiscard]] QString cutText() const override;

private:
  [[nodiscard]] QRect textBox() const;

  QString m_text;
};

} // namespace tidewell
