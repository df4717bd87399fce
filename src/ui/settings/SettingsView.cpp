#include "ui/settings/SettingsView.h"

#include "ui/components/ScrollPane.h"
#include "ui/components/ShownText.h"
#include "ui/settings/SettingsPage.h"
#include "ui/settings/SettingsSection.h"
#include "ui/settings/SettingsSidebar.h"
#include "ui/settings/UnsavedNotice.h"
#include "ui/settings/UnsavedSettings.h"
#include "ui/tokens/TWColor.h"

#include <QHBoxLayout>
#include <QPaintEvent>
#include <QPainter>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace tidewell {

SettingsView::SettingsView(AppSettings& settings, PreferencesStore& store, const ViewTime& time,
                           QWidget* parent)
    : SpokenGroup(QAccessible::Window, translatedText("Tidewell — Settings"), parent),
      m_sidebar(new SettingsSidebar(this)), m_pages(new QStackedWidget(this)),
      m_notice(new UnsavedNotice(this)), m_unsaved(new UnsavedSettings(time, this)) {
  setWindowTitle(accessibleName());
  setLayoutDirection(Qt::LeftToRight); // as in every language of the texts
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(leastSize);
  for (const Section section : allSettingsSections) {
    m_pages->addWidget(new ScrollPane(makeSettingsPage(section, {settings, store, *m_unsaved}),
                                      titleText(section), m_pages));
  }
  layOut();
  connect(m_unsaved, &UnsavedSettings::changed, m_notice, &UnsavedNotice::setReason);
  connect(m_sidebar, &SettingsSidebar::chosen, this, &SettingsView::select);
  for (QShortcut* const keys :
       {new QShortcut(QKeySequence::Close, this), new QShortcut(Qt::Key_Escape, this)}) {
    connect(keys, &QShortcut::activated, this, [this] { window()->close(); });
  }
  resize(defaultSize);
  setFocus(); // no control shows the focus before Tab is pressed
}

SettingsView::~SettingsView() = default;

void SettingsView::paintEvent(QPaintEvent* event) {
  QPainter(this).fillRect(event->rect(), TWColor::surface);
}

void SettingsView::layOut() {
  auto* const column = new QVBoxLayout;
  column->setSpacing(0);
  column->addWidget(m_pages, 1);
  column->addWidget(m_notice);
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  row->addWidget(m_sidebar);
  row->addLayout(column, 1);
}

void SettingsView::select(Section section) {
  m_selectedSection = section;
  if (m_pages->isAncestorOf(window()->focusWidget())) {
    m_sidebar->focusSelected(); // otherwise the stack would focus a control of the page
  }
  m_pages->setCurrentIndex(static_cast<int>(section));
}

} // namespace tidewell
