#include "ui/detail/DetailWindowView.h"

#include "ui/components/ScrollPane.h"
#include "ui/detail/DetailStyles.h"
#include "ui/detail/DetailTabBar.h"
#include "ui/detail/DiagnosticsTab.h"
#include "ui/detail/HistoryTab.h"
#include "ui/detail/OverviewTab.h"
#include "ui/detail/ProcessesTab.h"
#include "ui/tokens/TWColor.h"

#include <QHBoxLayout>
#include <QPaintEvent>
#include <QPainter>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <utility>

namespace tidewell {

namespace {

constexpr int tabBarPadding = 16;

QStringList tabTitles() {
  return {QStringLiteral("Overview"), QStringLiteral("Processes"), QStringLiteral("History"),
          QStringLiteral("Diagnostics")};
}

} // namespace

DetailWindowView::DetailWindowView(DetailSources sources, std::function<void()> runSpeedTest,
                                   const ViewTime& time, QWidget* parent)
    : SpokenGroup(QAccessible::Window, QStringLiteral("Tidewell \u2014 Network Details"), parent),
      m_tabs(new DetailTabBar(tabTitles(), this)), m_stack(new QStackedWidget(this)),
      m_overview(new OverviewTab(sources)) {
  setWindowTitle(accessibleName());
  setLayoutDirection(Qt::LeftToRight); // the words are English, whatever the user's language
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(defaultSize);
  addTab(m_overview);
  addTab(new ProcessesTab(sources.tracker));
  addTab(new HistoryTab(sources.sampler));
  addTab(new DiagnosticsTab(sources, std::move(runSpeedTest), time));
  layOut();
  connect(m_tabs, &QTabBar::currentChanged, m_stack, &QStackedWidget::setCurrentIndex);
  connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this,
          [this] { window()->close(); });
  resize(defaultSize);
  setFocus(); // nothing is marked before Tab has chosen something
}

DetailWindowView::~DetailWindowView() = default;

int DetailWindowView::selectedTab() const { return m_stack->currentIndex(); }

DetailWindowView::TimeRange DetailWindowView::timeRange() const { return m_overview->timeRange(); }

void DetailWindowView::paintEvent(QPaintEvent* event) {
  QPainter(this).fillRect(event->rect(), TWColor::surface());
}

void DetailWindowView::addTab(QWidget* content) {
  constexpr int padding = detailGrid::padding;
  content->layout()->setContentsMargins(padding, padding, padding - ScrollPane::barWidth, padding);
  m_stack->addWidget(new ScrollPane(content, tabTitles().at(m_stack->count()), m_stack));
}

void DetailWindowView::layOut() {
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  auto* const tabRow = new QHBoxLayout;
  tabRow->setContentsMargins(tabBarPadding, tabBarPadding, tabBarPadding, tabBarPadding);
  tabRow->addWidget(m_tabs);
  tabRow->addStretch();
  column->addLayout(tabRow);
  column->addWidget(m_stack, 1);
}

} // namespace tidewell
