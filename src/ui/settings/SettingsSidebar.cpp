#include "ui/settings/SettingsSidebar.h"

#include "ui/components/FittedText.h"
#include "ui/components/Painting.h"
#include "ui/components/ShownText.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QPainter>
#include <QVBoxLayout>

namespace tidewell {
namespace {

constexpr int sidePadding = 10;
constexpr int edgePadding = 7;
constexpr int slotWidth = 20;
constexpr int slotSpacing = 8;
constexpr double symbolEdge = 14.0;
constexpr double radius = 6.0;
constexpr int smallestTitleSize = 10;
constexpr int titleLeft = sidePadding + slotWidth + slotSpacing;

TextStyle titleStyle(const QColor& color) {
  return {.font = TWFont::body(), .color = color, .smallestPixelSize = smallestTitleSize};
}

constexpr int padding = 8;
constexpr int spacing = 2;

} // namespace

SidebarEntry::SidebarEntry(Icon symbol, const QString& title, QWidget* parent)
    : ChoiceButton(title, parent), m_symbol(symbol) {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QSize SidebarEntry::sizeHint() const {
  return {slotWidth + 2 * sidePadding, lineHeight(titleStyle({})) + 2 * edgePadding};
}

void SidebarEntry::paintGround(QPainter& painter) const {
  if (isChecked() || underMouse()) {
    fillRounded(painter, rect(), radius, isChecked() ? TWColor::accentDim : TWColor::surface2);
  }
  if (showsFocus()) {
    drawFocusRing(painter, rect(), radius);
  }
}

void SidebarEntry::resizeEvent(QResizeEvent* event) {
  setToolTip(ifCut(text(), titleStyle({}), width() - titleLeft - sidePadding));
  ChoiceButton::resizeEvent(event);
}

void SidebarEntry::paintEvent(QPaintEvent* /*event*/) {
  SmoothPainter painter(this);
  paintGround(painter);
  const QColor& color = isChecked() ? TWColor::accent : TWColor::textSecondary;
  painter.save();
  painter.translate(sidePadding + (slotWidth - symbolEdge) / 2.0, (height() - symbolEdge) / 2.0);
  painter.scale(symbolEdge / iconEdge, symbolEdge / iconEdge);
  drawIcon(painter, m_symbol, {}, color);
  painter.restore();
  drawLine(painter, rect().adjusted(titleLeft, edgePadding, -sidePadding, -edgePadding), text(),
           titleStyle(color));
}

SettingsSidebar::SettingsSidebar(QWidget* parent)
    : SpokenGroup(QAccessible::Grouping, translatedText("Sections"), parent) {
  setFixedWidth(sidebarWidth);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(padding, padding, padding, padding);
  column->setSpacing(spacing);
  for (const SettingsSection section : allSettingsSections) {
    auto* const entry = new SidebarEntry(symbol(section), titleText(section), this);
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

void SettingsSidebar::focusSelected() {
  for (SidebarEntry* const entry : findChildren<SidebarEntry*>()) {
    if (entry->isChecked()) {
      entry->setFocus();
    }
  }
}

void SettingsSidebar::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  fillLine(painter, QRect(width() - 1, 0, 1, height()), TWColor::borderSubtle);
}

} // namespace tidewell
