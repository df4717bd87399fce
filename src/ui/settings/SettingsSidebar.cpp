#include "ui/settings/SettingsSidebar.h"

#include "ui/settings/SidebarEntry.h"
#include "ui/tokens/TWColor.h"

#include <QPainter>
#include <QVBoxLayout>

namespace tidewell {

namespace {

constexpr int padding = 8;
constexpr int spacing = 2;

} // namespace

SettingsSidebar::SettingsSidebar(QWidget* parent)
    : SpokenGroup(QAccessible::Grouping, QStringLiteral("Sections"), parent) {
  setFixedWidth(sidebarWidth);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(padding, padding, padding, padding);
  column->setSpacing(spacing);
  for (const SettingsSection section : allSettingsSections) {
    const std::string_view title = rawValue(section);
    auto* const entry = new SidebarEntry(
        symbol(section), QString::fromLatin1(title.data(), static_cast<qsizetype>(title.size())),
        this);
    entry->setChecked(section == allSettingsSections.front());
    connect(entry, &QRadioButton::toggled, this, [this, section](bool isChosen) {
      if (isChosen) {
        Q_EMIT chosen(section);
      }
    });
    column->addWidget(entry);
  }
  column->addStretch();
}

void SettingsSidebar::paintEvent(QPaintEvent* /*event*/) {
  QPainter(this).fillRect(QRect(width() - 1, 0, 1, height()), TWColor::borderSubtle());
}

} // namespace tidewell
