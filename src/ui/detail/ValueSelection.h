#pragma once

#include <QObject>

#include <functional>
#include <string>
#include <vector>

class QKeyEvent;

namespace tidewell {

class ValueRow;

/// Lets the user select the value of one of some rows and copy it. A click selects a value, Up,
/// Down, Home and End select others, and Tab stops at one of them. The copy keys and the context
/// menu copy it.
class ValueSelection final : public QObject {
  Q_OBJECT

public:
  /// The rows, from top to bottom, belong to `parent`. The first is always shown. `copy` gets the
  /// whole value, also if it is shown cut.
  ValueSelection(std::vector<ValueRow*> rows, std::function<void(const std::string&)> copy,
                 QWidget* parent);

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  void stopAt(const ValueRow* row);
  [[nodiscard]] bool press(const ValueRow& row, QKeyEvent& event);
  [[nodiscard]] ValueRow* rowFor(int key, const ValueRow& from) const;
  void openMenu(ValueRow& row, const QPoint& place);

  std::vector<ValueRow*> m_rows;
  std::function<void(const std::string&)> m_copy;
};

} // namespace tidewell
