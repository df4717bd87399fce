#include "ui/settings/SettingsPage.h"

#include "ui/components/AccessibleWidgets.h"
#include "ui/components/Buttons.h"
#include "ui/components/ChoiceList.h"
#include "ui/components/ScrollPane.h"
#include "ui/components/ShownText.h"
#include "ui/components/TextLine.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QAbstractItemView>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <utility>

namespace tidewell {
namespace {

constexpr int edgePadding = 10;
constexpr int textSpacing = 2;
constexpr int leastGap = 16;

TextStyle descriptionStyle() {
  return {TWFont::standard(11, QFont::Normal), TWColor::textTertiary};
}

constexpr int padding = 24;
constexpr int titleSpacing = 20;
constexpr int groupSpacing = 28;
constexpr int headingSpacing = 12;
constexpr double headingLetterSpacing = 1.5;

TextStyle titleStyle() { return {TWFont::standard(16, QFont::DemiBold), TWColor::text}; }

TextStyle headingStyle() {
  return {withLetterSpacing(TWFont::label(), headingLetterSpacing), TWColor::textTertiary};
}

} // namespace

SettingRow::SettingRow(const QString& title, const QString& description, QWidget* control,
                       QWidget* parent)
    : QWidget(parent), m_button(qobject_cast<QAbstractButton*>(control)) {
  control->setAccessibleName(title);
  control->setAccessibleDescription(description);
  auto* const titleLine = new TextLine({TWFont::body(), TWColor::text}, this);
  titleLine->setText(title);
  auto* const descriptionLine = new TextLine(descriptionStyle(), this);
  descriptionLine->setText(description);

  auto* const texts = new QVBoxLayout;
  texts->setSpacing(textSpacing);
  texts->addWidget(titleLine);
  texts->addWidget(descriptionLine);
  auto* const row = new QHBoxLayout;
  // A switch's track ends where lists and lines end. Only its focus ring stands out.
  row->setContentsMargins(0, edgePadding, m_button ? 0 : ToggleSwitch::margin, edgePadding);
  row->setSpacing(leastGap);
  row->addLayout(texts, 1);
  row->addWidget(control);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addLayout(row);
  auto* const line = new QHBoxLayout;
  line->setContentsMargins(0, 0, ToggleSwitch::margin, 0);
  line->addWidget(Divider::horizontal(this));
  column->addLayout(line);
}

void SettingRow::mousePressEvent(QMouseEvent* event) {
  event->setAccepted(m_button != nullptr && event->button() == Qt::LeftButton);
}

void SettingRow::mouseReleaseEvent(QMouseEvent* event) {
  if (m_button != nullptr && event->button() == Qt::LeftButton &&
      rect().contains(event->position().toPoint())) {
    m_button->click();
  }
}

SettingsPage::SettingsPage(const QString& title, const SettingsSources& sources)
    : m_settings(sources.settings), m_store(sources.store), m_unsaved(sources.unsaved),
      m_column(new QVBoxLayout) {
  auto* const frame = new QVBoxLayout(this);
  frame->setContentsMargins(padding, padding, padding - ScrollPane::barWidth - ToggleSwitch::margin,
                            padding);
  frame->setSpacing(0);
  auto* const titleLine = new TextLine(titleStyle(), this, QAccessible::Heading);
  titleLine->setText(title);
  frame->addWidget(titleLine);
  frame->addSpacing(titleSpacing);
  m_column->setSpacing(0);
  frame->addLayout(m_column);
  frame->addStretch();
}

void SettingsPage::settingGroup(const char* title) {
  if (m_column->count() > 0) {
    m_column->addSpacing(groupSpacing);
  }
  auto* const heading = new TextLine(headingStyle(), this, QAccessible::Heading);
  heading->setText(shownText(title).toUpper(), shownText(title));
  m_column->addWidget(heading);
  m_column->addSpacing(headingSpacing);
}

void SettingsPage::settingToggle(const char* title, const char* description,
                                 SettingBinding<bool> isOn) {
  auto* const toggle = new ToggleSwitch(this);
  const auto show = [this, toggle, isOn] {
    const QSignalBlocker silent(toggle);
    toggle->setChecked(std::invoke(isOn.read, m_settings));
    toggle->update();
  };
  // Not `clicked`, which assistive technology does not cause.
  connect(toggle, &QAbstractButton::toggled, this, [this, isOn, show](bool value) {
    change(isOn, value);
    show(); // what is stored
  });
  addRow(title, description, toggle);
  observe(isOn.key, show);
}

void SettingsPage::addPicker(const char* title, const char* description, std::string_view key,
                             const Choices& choices) {
  auto* const list = new ChoiceList(choices.labels, this);
  const auto show = [list, selected = choices.selected] { list->setCurrentIndex(selected()); };
  connect(list, &QComboBox::activated, this, [choose = choices.choose, show](int index) {
    choose(index);
    show();
  });
  addRow(title, description, list);
  // A choice list's accessible name is its selection. The label adds the setting's title.
  auto* const label = new QLabel(shownText(title), list->parentWidget());
  label->setBuddy(list);
  list->view()->setAccessibleName(shownText(title));
  label->hide();
  observe(key, show);
}

void SettingsPage::note(const char* text) {
  auto* const line = new TextLine({TWFont::body(), TWColor::textTertiary}, this);
  line->setText(shownText(text));
  m_column->addWidget(line);
}

void SettingsPage::addRow(const char* title, const char* description, QWidget* control) {
  m_column->addWidget(new SettingRow(shownText(title), shownText(description), control, this));
}

void SettingsPage::observe(std::string_view key, std::function<void()> show) {
  show();
  m_subscriptions.push_back(
      m_store.observe(key, [this, key = std::string(key), show = std::move(show)](const auto&) {
        m_unsaved.forget(key);
        show();
      }));
}

} // namespace tidewell
