#include "ui/components/ChoiceButton.h"

#include <QKeyEvent>

namespace tidewell {

ChoiceButton::ChoiceButton(const QString& text, QWidget* parent) : QRadioButton(text, parent) {
  // One stop for all of them. Not by a click, which would leave its mark.
  setFocusPolicy(Qt::NoFocus);
  connect(this, &QRadioButton::toggled, this,
          [this](bool isChosen) { setFocusPolicy(isChosen ? Qt::TabFocus : Qt::NoFocus); });
  setAttribute(Qt::WA_Hover);
}

bool ChoiceButton::hitButton(const QPoint& point) const { return rect().contains(point); }

void ChoiceButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    click();
    return;
  }
  QRadioButton::keyPressEvent(event);
}

} // namespace tidewell
