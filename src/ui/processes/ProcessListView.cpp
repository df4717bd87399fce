#include "ui/processes/ProcessListView.h"

#include "ui/components/ShownText.h"
#include "ui/components/TextLine.h"
#include "ui/processes/ProcessRow.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace tidewell {
namespace {

constexpr int emptyPadding = 32;

TextStyle emptyStyle() {
  return {.font = TWFont::body(), .color = TWColor::textTertiary, .alignment = Qt::AlignHCenter};
}

} // namespace

ProcessListView::ProcessListView(QWidget* parent)
    : SpokenGroup(QAccessible::List, translatedText("Active Processes"), parent),
      m_header(new ProcessListHeader(this)), m_body(new QWidget(this)),
      m_empty(new TextLine(emptyStyle(), m_body)) {
  m_empty->setText(translatedText("No active network processes"));
  layOut();
  setProcesses({});
}

void ProcessListView::layOut() {
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, m_header->sizeHint().height(), 0, 0);
  column->addWidget(m_body);
  auto* const rows = new QVBoxLayout(m_body);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(0);
  rows->addWidget(m_empty);
}

void ProcessListView::setProcesses(const std::vector<ProcessUsage>& processes) {
  while (m_rows.size() < processes.size()) {
    m_rows.push_back(new ProcessRow(m_rows.size(), m_body));
    m_body->layout()->addWidget(m_rows.back());
  }
  for (std::size_t index = 0; index < m_rows.size(); ++index) {
    if (index < processes.size()) {
      m_rows[index]->setUsage(processes[index]);
    }
    m_rows[index]->setVisible(index < processes.size());
  }
  m_empty->setVisible(processes.empty());
  const int padding = processes.empty() ? emptyPadding : 0;
  m_body->layout()->setContentsMargins(padding, padding, padding, padding);
  placeHeader();
}

std::vector<const ProcessRow*> ProcessListView::rows() const {
  std::vector<const ProcessRow*> shown;
  std::copy_if(m_rows.begin(), m_rows.end(), std::back_inserter(shown),
               [](const ProcessRow* row) { return !row->isHidden(); });
  return shown;
}

void ProcessListView::resizeEvent(QResizeEvent* /*event*/) {
  layout()->activate();
  placeHeader();
}

void ProcessListView::showEvent(QShowEvent* /*event*/) { watchScrolling(); }

void ProcessListView::watchScrolling() {
  if (m_viewport != nullptr) {
    return;
  }
  for (QWidget* around = parentWidget(); around != nullptr; around = around->parentWidget()) {
    if (auto* const area = qobject_cast<QScrollArea*>(around)) {
      m_viewport = area->viewport();
      connect(area->verticalScrollBar(), &QScrollBar::valueChanged, this,
              &ProcessListView::placeHeader);
      return;
    }
  }
}

int ProcessListView::scrolledAway() const {
  return m_viewport == nullptr ? 0 : -mapTo(m_viewport, QPoint()).y();
}

void ProcessListView::placeHeader() {
  const int headerHeight = m_header->sizeHint().height();
  const int top = std::clamp(scrolledAway(), 0, std::max(0, height() - headerHeight));
  m_header->setGeometry(0, top, width(), headerHeight);
  // The header comes before the rows in reading order, so it is below them. Their mask excludes it.
  m_body->setMask(QRegion(m_body->rect()) - m_header->geometry().translated(-m_body->pos()));
}

} // namespace tidewell
