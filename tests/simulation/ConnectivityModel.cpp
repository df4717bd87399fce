#include "ConnectivityModel.h"

#include <algorithm>
#include <chrono>
#include <string>

namespace tidewell::test {

namespace {

using InterfaceType = ConnectionInfo::InterfaceType;

// Three seconds, plus the time in which a helper that ignores SIGTERM is killed.
constexpr Ticks longestLookup = std::chrono::milliseconds(3300);

InterfaceType kindOf(const PathReport& path) {
  if (path.usesWifi) {
    return InterfaceType::wifi;
  }
  if (path.usesWiredEthernet) {
    return InterfaceType::ethernet;
  }
  return path.usesCellular ? InterfaceType::cellular : InterfaceType::other;
}

} // namespace

void ConnectivityModel::adopt(MonitorState& monitor, const std::optional<PathReport>& path) {
  m_monitor = &monitor;
  m_expected.clear();
  m_place = 0;
  m_deadline = m_scheduler.now() + longestLookup;
  m_awaitsFirstDetails = true;
  if (path) {
    reports(*path);
  }
  m_attaching = true;
  m_subscriptions.clear();
  watch(monitor);
  m_attaching = false;
}

void ConnectivityModel::watch(MonitorState& monitor) {
  const auto on = [this](auto& published, auto hears) {
    m_subscriptions.push_back(published.subscribe([this, hears](const auto& value) {
      if (!m_attaching) {
        m_findings.require(m_monitor != nullptr, "a publication after the monitor's end");
        (this->*hears)(value);
      }
    }));
  };
  on(monitor.isConnected, &ConnectivityModel::hearsConnectivity);
  on(monitor.interfaceType, &ConnectivityModel::hearsType);
  on(monitor.connectionInfo, &ConnectivityModel::hearsDetails);
}

void ConnectivityModel::reports(const PathReport& path) {
  if (m_monitor != nullptr) {
    m_deadline = std::max(m_deadline, m_scheduler.now()) + longestLookup;
    m_expected.push_back({path.isSatisfied, kindOf(path), m_deadline});
  }
}

void ConnectivityModel::takeTurn(int place) {
  m_findings.require(m_place == place, "the order in which a path is published, place", place);
  m_place = place + 1;
}

void ConnectivityModel::hearsConnectivity(bool isConnected) {
  takeTurn(0);
  m_findings.require(!m_awaitsFirstDetails, "a path before the first details");
  m_findings.require(!m_expected.empty(), "a path that was not reported");
  if (!m_expected.empty()) {
    m_findings.require(isConnected == m_expected.front().isConnected, "the paths in their order");
  }
}

void ConnectivityModel::hearsType(InterfaceType type) {
  takeTurn(1);
  if (!m_expected.empty()) {
    m_findings.require(type == m_expected.front().type, "the kind of link", rawValue(type));
  }
}

void ConnectivityModel::hearsDetails(const ConnectionInfo& info) {
  auto type = InterfaceType::wifi;
  if (m_awaitsFirstDetails) {
    m_findings.require(m_place == 0, "the first details alone");
    m_awaitsFirstDetails = false;
  } else {
    takeTurn(2);
    m_findings.require(!m_expected.empty(), "details without a report");
    if (!m_expected.empty()) {
      type = m_expected.front().type;
      m_expected.pop_front();
    }
  }
  m_place = 0;
  m_findings.require(info.interfaceType == type &&
                         info.interfaceName.starts_with(std::string(rawValue(type)) + " ("),
                     "the details belong to the path", info.interfaceName);
}

void ConnectivityModel::checkNothingIsMissing() {
  const bool isLate = !m_expected.empty() && m_expected.front().deadline < m_scheduler.now();
  m_findings.require(m_monitor == nullptr || !isLate, "a path is not published in time");
}

} // namespace tidewell::test
