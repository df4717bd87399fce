#include "ui/settings/SettingsView.h"

#include "ui/components/ScrollPane.h"
#include "ui/components/ShownText.h"
#include "ui/settings/SettingsPage.h"
#include "ui/settings/SettingsSection.h"
#include "ui/settings/SettingsSidebar.h"
#include "ui/tokens/TWColor.h"

#include <QHBoxLayout>
#include <QPaintEvent>
#include <QPainter>
#include <QShortcut>
#include <QStackedWidget>

namespace tidewell {

SettingsView::SettingsView(AppSettings& settings, PreferencesStore& store, QWidget* parent)
    : SpokenGroup(QAccessible::Window, QStringLiteral("Tidewell \u2014 Settings"), parent),
      m_sidebar(new SettingsSidebar(this)), m_pages(new QStackedWidget(this)) {
  setWindowTitle(accessibleName());
  setLayoutDirection(Qt::LeftToRight); // the text is English in every locale
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(leastSize);
  for (const Section section : allSettingsSections) {
    m_pages->addWidget(new ScrollPane(makeSettingsPage(section, settings, store),
                                      shownText(rawValue(section)), m_pages));
  }
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  row->addWidget(m_sidebar);
  row->addWidget(m_pages, 1);
  connect(m_sidebar, &SettingsSidebar::chosen, this, &SettingsView::select);
  connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this,
          [this] { window()->close(); });
  resize(defaultSize);
  setFocus(); // no control shows the focus before Tab is pressed
}

SettingsView::~SettingsView() = default;

void SettingsView::paintEvent(QPaintEvent* event) {
  QPainter(this).fillRect(event->rect(), TWColor::surface);
}

void SettingsView::select(Section section) {
  m_selectedSection = section;
  if (m_pages->isAncestorOf(window()->focusWidget())) {
    m_sidebar->focusSelected(); // otherwise the stack would focus a control of the page
  }
  m_pages->setCurrentIndex(static_cast<int>(section));
}

} // namespace tidewell
