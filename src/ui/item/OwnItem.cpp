#include "ui/item/OwnItem.h"

#include "base/Translation.h"
#include "tile/TextTile.h"
#include "ui/components/ShownText.h"
#include "ui/item/ItemWindow.h"

#include <QCursor>
#include <QIcon>

#include <utility>

namespace tidewell {

OwnItem::OwnItem(Published<std::string>& text, ItemCommands commands)
    : m_commands(std::move(commands)) {
  fillMenu();
  if (QSystemTrayIcon::isSystemTrayAvailable()) {
    showInTray();
  } else {
    m_window = std::make_unique<ItemWindow>(m_menu, m_commands.togglePanel);
  }
  m_text = text.subscribe([this](const std::string& value) { showText(value); });
}

OwnItem::~OwnItem() = default;

void OwnItem::fillMenu() {
  const auto add = [this](const char* label, const std::function<void()>& chosen) {
    QObject::connect(m_menu.addAction(translatedText(label)), &QAction::triggered, &m_menu, chosen);
  };
  add(translatable("Open"), [this] { m_commands.togglePanel(std::nullopt); });
  add(translatable("Details"), m_commands.openDetail);
  add(translatable("Settings"), m_commands.openSettings);
  add(translatable("Speed Test"), m_commands.runSpeedTest);
  add(translatable("Copy IP"), m_commands.copyAddress);
  m_menu.addSeparator();
  add(translatable("Quit"), m_commands.quit);
}

void OwnItem::showInTray() {
  m_icon = std::make_unique<QSystemTrayIcon>();
  m_icon->setContextMenu(&m_menu);
  QObject::connect(m_icon.get(), &QSystemTrayIcon::activated, m_icon.get(),
                   [this](QSystemTrayIcon::ActivationReason reason) {
                     if (reason == QSystemTrayIcon::Trigger) {
                       m_commands.togglePanel(QCursor::pos());
                     }
                   });
}

void OwnItem::showText(const std::string& text) {
  if (m_window) {
    m_window->showText(text);
    return;
  }
  QIcon icon;
  for (const int edge : {22, 44}) {
    icon.addPixmap(squarePicture(text, edge));
  }
  m_icon->setIcon(icon);
  m_icon->setToolTip(QString::fromStdString(text));
  m_icon->show();
}

} // namespace tidewell
