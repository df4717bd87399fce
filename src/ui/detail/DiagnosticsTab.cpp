#include "ui/detail/DiagnosticsTab.h"

#include "connectivity/MonitorState.h"
#include "sampling/SamplerState.h"
#include "speedtest/SpeedTestState.h"
#include "ui/components/ShownText.h"
#include "ui/components/TextLine.h"
#include "ui/components/ValueRow.h"
#include "ui/detail/DetailStyles.h"
#include "ui/detail/DiagnosticGroups.h"
#include "ui/detail/SpeedTestGroup.h"
#include "ui/detail/ValueSelection.h"

#include <QVBoxLayout>

#include <utility>

namespace tidewell {

DiagnosticsTab::DiagnosticsTab(DetailSources sources, const DetailActions& actions,
                               const ViewTime& time, QWidget* parent)
    : QWidget(parent), m_sources(sources),
      m_title(makeHeading(translatedText("Network Diagnostics"), this)),
      m_connection(new ConnectionGroup(this)), m_performance(new PerformanceGroup(this)),
      m_speedTest(new SpeedTestGroup(actions.runSpeedTest, time, this)) {
  layOut();
  observe();
  const auto rows = findChildren<ValueRow*>();
  new ValueSelection({rows.begin(), rows.end()}, actions.copy, this);
}

void DiagnosticsTab::layOut() {
  auto* const column = new QVBoxLayout(this);
  column->setSpacing(0);
  column->addWidget(m_title);
  column->addSpacing(detailGrid::headingSpacing);
  column->addWidget(m_connection);
  column->addSpacing(detailGrid::sectionSpacing);
  column->addWidget(m_performance);
  column->addSpacing(detailGrid::sectionSpacing);
  column->addWidget(m_speedTest);
  column->addStretch();
}

void DiagnosticsTab::observe() {
  const auto keep = [this](Subscription subscription) {
    m_subscriptions.push_back(std::move(subscription));
  };
  const auto& [sampler, monitor, tracker, speedTest, isThere] = m_sources;
  keep(monitor.isConnected.subscribe([this](bool is) { m_connection->setConnected(is); }));
  keep(monitor.connectionInfo.subscribe(
      [this](const ConnectionInfo& info) { m_connection->setInfo(info); }));
  keep(sampler.latencyMs.subscribe([this](double ms) { m_performance->setLatency(ms); }));
  keep(sampler.jitterMs.subscribe([this](double ms) { m_performance->setJitter(ms); }));
  keep(sampler.packetLossPercent.subscribe(
      [this](double percent) { m_performance->setPacketLoss(percent); }));
  keep(speedTest.isRunning.subscribe([this](bool) { showSpeedTest(); }));
  keep(speedTest.lastResult.subscribe([this](const auto&) { showSpeedTest(); }));
  keep(speedTest.lastMeasured.subscribe([this](const auto&) { showSpeedTest(); }));
  keep(speedTest.failure.subscribe([this](const auto&) { showSpeedTest(); }));
  keep(isThere.subscribe([this](bool) { showSpeedTest(); }));
}

void DiagnosticsTab::showSpeedTest() {
  m_speedTest->setState(m_sources.speedTest, m_sources.isThere.get());
}

} // namespace tidewell
