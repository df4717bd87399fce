#include "ui/panel/PopoverView.h"

#include "connectivity/MonitorState.h"
#include "sampling/SamplerState.h"
#include "speedtest/SpeedTestState.h"
#include "ui/charts/MiniGraphView.h"
#include "ui/components/AccessibleWidgets.h"
#include "ui/components/Painting.h"
#include "ui/panel/ActionBar.h"
#include "ui/panel/PanelSections.h"
#include "ui/panel/SpeedTestStrip.h"
#include "ui/tokens/TWColor.h"

#include <QPainter>
#include <QPen>
#include <QPointer>
#include <QRect>
#include <QVBoxLayout>

#include <utility>

namespace tidewell {
namespace {

// The background is not blurred, so little of it may show through the text.
constexpr double translucentOpacity = 0.94;

/// So dark that the panel has the colour of the surface over white, and a darker one over anything
/// else. The cards on it stay brighter than it everywhere.
QColor translucentSurface() {
  constexpr float throughWhite = 1.0F - static_cast<float>(translucentOpacity);
  const auto darkened = [](float component) {
    return (component - throughWhite) / static_cast<float>(translucentOpacity);
  };
  const QColor& surface = TWColor::surface;
  return QColor::fromRgbF(darkened(surface.redF()), darkened(surface.greenF()),
                          darkened(surface.blueF()), static_cast<float>(translucentOpacity));
}

constexpr double copiedSeconds = 1.5;

} // namespace

void paintBackdrop(QPainter& painter, const QRect& panel, Backdrop backdrop) {
  if (backdrop == Backdrop::opaque) {
    const DevicePixels grid(painter);
    const QRectF outer = grid.rect(panel);
    const double border = grid.thickness(1);
    painter.fillRect(outer, TWColor::surface3);
    painter.fillRect(outer.adjusted(border, border, -border, -border), TWColor::surface);
    return;
  }
  painter.setRenderHint(QPainter::Antialiasing);
  drawFrame(painter, panel, panelRadius, TWColor::surface3, translucentSurface());
}

PopoverView::PopoverView(PanelSources sources, PanelActions actions, Backdrop backdrop,
                         const ViewTime& time, QWidget* parent)
    : SpokenGroup(QAccessible::Pane, QStringLiteral("Tidewell"), parent), m_sources(sources),
      m_actions(std::move(actions)), m_backdrop(backdrop), m_time(time),
      m_hero(new ThroughputHero(time, this)), m_stats(new StatsGrid(this)),
      m_graph(new MiniGraphView(this)), m_connection(new ConnectionSection(this)),
      m_strip(new SpeedTestStrip(time, this)), m_divider(Divider::horizontal(this)),
      m_actionBar(new ActionBar(this)) {
  setLayoutDirection(Qt::LeftToRight); // as in every language of the texts
  setAttribute(Qt::WA_TranslucentBackground, backdrop == Backdrop::translucent);
  setAttribute(Qt::WA_OpaquePaintEvent, backdrop == Backdrop::opaque);
  layOut();
  connectActions();
  observeSampler();
  observeMonitor();
  observeSpeedTest();
  setFocus(); // Space presses no button before Tab is pressed
}

PopoverView::~PopoverView() = default;

void PopoverView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  paintBackdrop(painter, rect(), m_backdrop);
}

void PopoverView::layOut() {
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->setSizeConstraint(QLayout::SetFixedSize);
  const auto add = [column](QWidget* section) {
    section->setFixedWidth(panelWidth);
    column->addWidget(section);
  };
  add(m_hero);
  add(m_stats);
  auto* const graphFrame = new QVBoxLayout;
  graphFrame->setContentsMargins(20, 16, 20, 16);
  graphFrame->addWidget(m_graph);
  column->addLayout(graphFrame);
  add(m_connection);
  add(m_strip);
  add(m_divider);
  add(m_actionBar);
}

void PopoverView::observeSampler() {
  SamplerState& sampler = m_sources.sampler;
  m_subscriptions.push_back(sampler.currentDownloadBytesPerSec.subscribe(
      [this](std::int64_t rate) { m_hero->setDownload(rate); }));
  m_subscriptions.push_back(
      sampler.currentUploadBytesPerSec.subscribe([this](std::int64_t) { showStats(); }));
  for (Published<double>* value :
       {&sampler.latencyMs, &sampler.jitterMs, &sampler.packetLossPercent}) {
    m_subscriptions.push_back(value->subscribe([this](double) {
      showStats();
      showStatus();
    }));
  }
  m_subscriptions.push_back(sampler.snapshots.subscribe(
      [this](const SnapshotList& snapshots) { m_graph->setSnapshots(snapshots); }));
}

void PopoverView::observeMonitor() {
  MonitorState& monitor = m_sources.monitor;
  m_subscriptions.push_back(monitor.isConnected.subscribe([this](bool) { showStatus(); }));
  m_subscriptions.push_back(monitor.connectionInfo.subscribe(
      [this](const ConnectionInfo& info) { m_connection->setInfo(info); }));
}

void PopoverView::observeSpeedTest() {
  SpeedTestState& speedTest = m_sources.speedTest;
  m_subscriptions.push_back(speedTest.isRunning.subscribe([this](bool) { showSpeedTest(); }));
  for (auto* result : {&speedTest.lastResult, &speedTest.lastMeasured}) {
    m_subscriptions.push_back(result->subscribe([this](const auto&) { showSpeedTest(); }));
  }
  m_subscriptions.push_back(
      speedTest.failure.subscribe([this](const std::string&) { showSpeedTest(); }));
}

void PopoverView::connectActions() {
  m_actionBar->onPressed(PanelAction::speedTest, [this] { startSpeedTest(); });
  m_actionBar->onPressed(PanelAction::copyIP, [this] { copyAddress(); });
  m_actionBar->onPressed(PanelAction::details, m_actions.openDetail);
  m_actionBar->onPressed(PanelAction::settings, m_actions.openSettings);
  m_actionBar->onPressed(PanelAction::quit, m_actions.quit);
}

void PopoverView::showStats() {
  const SamplerState& sampler = m_sources.sampler;
  m_stats->setFigures(sampler.currentUploadBytesPerSec.get(), sampler.latencyMs.get(),
                      sampler.jitterMs.get(), sampler.packetLossPercent.get());
}

void PopoverView::showStatus() { m_hero->setStatus(m_sources.sampler.currentStatus()); }

void PopoverView::showSpeedTest() {
  m_strip->setState(m_sources.speedTest);
  m_actionBar->setTesting(m_sources.speedTest.isRunning.get());
}

void PopoverView::startSpeedTest() const {
  if (!m_sources.speedTest.isRunning.get()) {
    m_actions.runSpeedTest();
  }
}

void PopoverView::copyAddress() {
  m_actions.copyText(addressToCopy(m_sources.monitor.connectionInfo.get()));
  setCopiedIP(true);
  m_time.after(copiedSeconds, [view = QPointer(this)] {
    if (view) {
      view->setCopiedIP(false);
    }
  });
}

void PopoverView::setCopiedIP(bool copied) {
  m_copiedIP = copied;
  m_actionBar->setCopied(copied);
}

} // namespace tidewell
