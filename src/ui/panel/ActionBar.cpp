#include "ui/panel/ActionBar.h"

#include "ui/components/AccessibleWidgets.h"
#include "ui/components/Buttons.h"
#include "ui/components/ShownText.h"

#include <QHBoxLayout>

#include <cstddef>
#include <utility>

namespace tidewell {
namespace {

constexpr int separatorHeight = 28;

} // namespace

ActionBar::ActionBar(QWidget* parent)
    : QWidget(parent), m_buttons{new ActionButton(Icon::bolt, translatedText("Speed Test"), this),
                                 new ActionButton(Icon::copy, translatedText("Copy IP"), this),
                                 new ActionButton(Icon::barChart, translatedText("Details"), this),
                                 new ActionButton(Icon::gear, translatedText("Settings"), this),
                                 new ActionButton(Icon::power, translatedText("Quit"), this)} {
  setAccessibleName(translatedText("Actions"));
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
               isTesting ? translatedText("Testing...") : translatedText("Speed Test"));
}

void ActionBar::setCopied(bool isCopied) {
  button(PanelAction::copyIP)
      .setFace(isCopied ? Icon::checkMark : Icon::copy,
               isCopied ? translatedText("Copied!") : translatedText("Copy IP"));
}

ActionButton& ActionBar::button(PanelAction action) {
  return *m_buttons.at(static_cast<std::size_t>(action));
}

} // namespace tidewell
