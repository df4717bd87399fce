#include "ui/detail/DetailWindowView.h"

#include "ui/components/FittedText.h"
#include "ui/components/Painting.h"
#include "ui/components/ScrollPane.h"
#include "ui/components/ShownText.h"
#include "ui/detail/DetailStyles.h"
#include "ui/detail/DetailTabs.h"
#include "ui/detail/DiagnosticsTab.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QHBoxLayout>
#include <QPaintEvent>
#include <QPainter>
#include <QShortcut>
#include <QStackedWidget>
#include <QStyleOptionTab>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <cmath>

namespace tidewell {
namespace {

// Beside a title. Aligns the first title with the content's left edge.
constexpr int sidePadding = 8;
constexpr int edgePadding = 4;
constexpr int barSpacing = 4;
constexpr int barHeight = 2;
constexpr double focusRadius = 5.0;

TextStyle titleStyle(bool isSelected) {
  return {TWFont::standard(13, QFont::Medium),
          isSelected ? TWColor::accent : TWColor::textSecondary};
}

constexpr int tabBarPadding = 16;

QStringList tabTitles() {
  return {translatedText("Overview"), translatedText("Processes"), translatedText("History"),
          translatedText("Diagnostics")};
}

} // namespace

DetailTabBar::DetailTabBar(const QStringList& titles, QWidget* parent)
    : QTabBar(parent), m_focusMark(new FocusMark(this)) {
  setAccessibleName(translatedText("Tabs"));
  setDrawBase(false);
  setExpanding(false);
  setUsesScrollButtons(false);
  setElideMode(Qt::ElideNone);
  setFont(titleStyle(true).font);
  setAttribute(Qt::WA_Hover);
  setFocusPolicy(Qt::StrongFocus); // after a click the arrow keys go on from there
  for (const QString& title : titles) {
    addTab(title);
  }
}

QSize DetailTabBar::tabSizeHint(int index) const {
  const double textWidth = lineWidth(tabText(index), titleStyle(true));
  return {static_cast<int>(std::ceil(textWidth)) + 2 * sidePadding,
          edgePadding + lineHeight(titleStyle(true)) + barSpacing + barHeight};
}

void DetailTabBar::paintEvent(QPaintEvent* /*event*/) {
  SmoothPainter painter(this);
  for (int index = 0; index < count(); ++index) {
    paintTab(painter, index);
  }
}

void DetailTabBar::paintTab(QPainter& painter, int index) const {
  const QRect tab = tabRect(index);
  const bool isSelected = index == currentIndex();
  QStyleOptionTab option;
  initStyleOption(&option, index);
  const bool isDown = option.state.testFlag(QStyle::State_Sunken);
  const QRect ground = tab.adjusted(1, 0, -1, -barHeight - 1);
  if (isDown || option.state.testFlag(QStyle::State_MouseOver)) {
    fillRounded(painter, ground, focusRadius, isDown ? TWColor::surface3 : TWColor::surface2);
  }
  const QRect title = tab.adjusted(sidePadding, edgePadding, -sidePadding, 0);
  drawLine(painter, title, tabText(index), titleStyle(isSelected));
  if (isSelected) {
    fillLine(painter, QRect(title.left(), tab.bottom() + 1 - barHeight, title.width(), barHeight),
             TWColor::accent);
  }
  if (isSelected && m_focusMark->isShown()) {
    drawFocusRing(painter, ground, focusRadius);
  }
}

void DetailTabBar::mouseReleaseEvent(QMouseEvent* event) {
  QTabBar::mouseReleaseEvent(event);
  update(); // no tab is pressed
}

void DetailTabBar::wheelEvent(QWheelEvent* event) { event->ignore(); }

DetailWindowView::DetailWindowView(DetailSources sources, const DetailActions& actions,
                                   const ViewTime& time, QWidget* parent)
    : SpokenGroup(QAccessible::Window, translatedText("Tidewell — Network Details"), parent),
      m_tabs(new DetailTabBar(tabTitles(), this)), m_stack(new QStackedWidget(this)),
      m_overview(new OverviewTab(sources)) {
  setWindowTitle(accessibleName());
  setLayoutDirection(Qt::LeftToRight); // as in every language of the texts
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(defaultSize);
  addTab(m_overview);
  addTab(new ProcessesTab(sources.tracker));
  addTab(new HistoryTab(sources.sampler));
  addTab(new DiagnosticsTab(sources, actions, time));
  layOut();
  connect(m_tabs, &QTabBar::currentChanged, this, &DetailWindowView::select);
  addShortcuts();
  resize(defaultSize);
  setFocus(); // no control shows the focus before Tab is pressed
}

DetailWindowView::~DetailWindowView() = default;

int DetailWindowView::selectedTab() const { return m_stack->currentIndex(); }

DetailWindowView::TimeRange DetailWindowView::timeRange() const { return m_overview->timeRange(); }

void DetailWindowView::paintEvent(QPaintEvent* event) {
  QPainter(this).fillRect(event->rect(), TWColor::surface);
}

void DetailWindowView::addShortcuts() {
  for (QShortcut* const keys :
       {new QShortcut(QKeySequence::Close, this), new QShortcut(Qt::Key_Escape, this)}) {
    connect(keys, &QShortcut::activated, this, [this] { window()->close(); });
  }
  const auto step = [this](const QKeySequence& keys, int tabs) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, [this, tabs] {
      m_tabs->setCurrentIndex((m_tabs->currentIndex() + tabs + m_tabs->count()) % m_tabs->count());
    });
  };
  step(Qt::CTRL | Qt::Key_Tab, 1);
  step(Qt::CTRL | Qt::Key_PageDown, 1);
  step(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab, -1);
  step(Qt::CTRL | Qt::Key_PageUp, -1);
}

void DetailWindowView::select(int tab) {
  if (m_stack->isAncestorOf(window()->focusWidget())) {
    m_tabs->setFocus(); // otherwise the stack would focus a control of the page
  }
  m_stack->setCurrentIndex(tab);
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
