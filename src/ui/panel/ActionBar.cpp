#include "ui/panel/ActionBar.h"

#include "ui/components/AccessibleWidgets.h"
#include "ui/components/Buttons.h"

#include <QHBoxLayout>

#include <cstddef>
#include <utility>

namespace tidewell {
namespace {

constexpr int separatorHeight = 28;

} // namespace

ActionBar::ActionBar(QWidget* parent)
    : QWidget(parent), m_buttons{new ActionButton(Icon::bolt, QStringLiteral("Speed Test"), this),
                                 new ActionButton(Icon::copy, QStringLiteral("Copy IP"), this),
                                 new ActionButton(Icon::barChart, QStringLiteral("Details"), this),
                                 new ActionButton(Icon::gear, QStringLiteral("Settings"), this),
                                 new ActionButton(Icon::power, QStringLiteral("Quit"), this)} {
  setAccessibleName(QStringLiteral("Actions"));
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  for (ActionButton* button : m_buttons) {
    if (button != m_buttons.front()) {
      row->addWidget(Divider::vertical(separatorHeight, this));
    }
    row->addWidget(button, 1);
  }
}

void ActionBar::onPressed(PanelAction action, std::function<void()> task) {
  connect(&button(action), &QPushButton::clicked, this, std::move(task));
}

void ActionBar::setTesting(bool isTesting) {
  button(PanelAction::speedTest)
      .setFace(isTesting ? Icon::hourglass : Icon::bolt,
               isTesting ? QStringLiteral("Testing...") : QStringLiteral("Speed Test"));
}

void ActionBar::setCopied(bool isCopied) {
  button(PanelAction::copyIP)
      .setFace(isCopied ? Icon::checkMark : Icon::copy,
               isCopied ? QStringLiteral("Copied!") : QStringLiteral("Copy IP"));
}

ActionButton& ActionBar::button(PanelAction action) {
  return *m_buttons.at(static_cast<std::size_t>(action));
}

} // namespace tidewell
