#pragma once

#include <QObject>

class QWidget;

namespace tidewell {

/// Decides whether a control draws its focus ring: if it has the focus, but after a click only once
/// a key is pressed.
class FocusMark final : public QObject {
  Q_OBJECT

public:
  /// The control owns this object.
  explicit FocusMark(QWidget* control);

  [[nodiscard]] bool isShown() const;

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  QWidget* m_control;
  bool m_isClicked = false; // the focus came from a click, and no key was pressed since
};

} // namespace tidewell
