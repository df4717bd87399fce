#include "ui/detail/ValueSelection.h"

#include "ui/components/Painting.h"
#include "ui/components/ScrollPane.h"
#include "ui/components/ShownText.h"
#include "ui/components/ValueRow.h"
#include "ui/tokens/TWFont.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>

#include <algorithm>
#include <iterator>
#include <utility>

namespace tidewell {

ValueSelection::ValueSelection(std::vector<ValueRow*> rows,
                               std::function<void(const std::string&)> copy, QWidget* parent)
    : QObject(parent), m_rows(std::move(rows)), m_copy(std::move(copy)) {
  for (ValueRow* row : m_rows) {
    row->installEventFilter(this);
  }
  stopAt(m_rows.front());
}

bool ValueSelection::eventFilter(QObject* watched, QEvent* event) {
  // A row that is being destroyed is no longer one.
  auto* const found = qobject_cast<ValueRow*>(watched);
  if (found == nullptr) {
    return false;
  }
  ValueRow& row = *found;
  switch (event->type()) {
  case QEvent::FocusIn:
    stopAt(&row);
    ScrollPane::reveal(row);
    return false;
  case QEvent::Hide:
    if (row.focusPolicy() == Qt::StrongFocus) {
      stopAt(m_rows.front());
    }
    return false;
  case QEvent::KeyPress:
    return press(row, *static_cast<QKeyEvent*>(event));
  case QEvent::ContextMenu:
    openMenu(row, static_cast<QContextMenuEvent*>(event)->globalPos());
    return true;
  default:
    return false;
  }
}

void ValueSelection::stopAt(const ValueRow* row) {
  for (ValueRow* each : m_rows) {
    each->setFocusPolicy(each == row ? Qt::StrongFocus : Qt::ClickFocus);
  }
}

bool ValueSelection::press(const ValueRow& row, QKeyEvent& event) {
  if (event.matches(QKeySequence::Copy)) {
    m_copy(row.value().toStdString());
    return true;
  }
  ValueRow* const next = event.modifiers() == Qt::NoModifier ? rowFor(event.key(), row) : nullptr;
  if (next != nullptr) {
    next->setFocus(Qt::OtherFocusReason);
  }
  return next != nullptr;
}

ValueRow* ValueSelection::rowFor(int key, const ValueRow& from) const {
  std::vector<ValueRow*> shown;
  std::ranges::copy_if(m_rows, std::back_inserter(shown),
                       [](const ValueRow* row) { return row->isVisible(); });
  const auto here = std::ranges::find(shown, &from);
  if (here == shown.end()) {
    return nullptr;
  }
  switch (key) {
  case Qt::Key_Up:
    return here == shown.begin() ? *here : *std::prev(here);
  case Qt::Key_Down:
    return std::next(here) == shown.end() ? *here : *std::next(here);
  case Qt::Key_Home:
    return shown.front();
  case Qt::Key_End:
    return shown.back();
  default:
    return nullptr;
  }
}

void ValueSelection::openMenu(ValueRow& row, const QPoint& place) {
  row.setFocus(Qt::MouseFocusReason);
  auto* const menu = new QMenu(&row);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setPalette(popupPalette());
  menu->setFont(TWFont::standard(12, QFont::Normal));
  // The value as it was when the user chose it.
  connect(menu->addAction(translatedText("Copy")), &QAction::triggered, this,
          [this, value = row.value().toStdString()] { m_copy(value); });
  menu->popup(place);
}

} // namespace tidewell
