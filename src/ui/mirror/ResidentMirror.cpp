#include "ui/mirror/ResidentMirror.h"

#include "ui/mirror/BusReading.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <memory>
#include <utility>

namespace tidewell {

namespace {

QString service() { return QStringLiteral("com.halden.Tidewell"); }
QString object() { return QStringLiteral("/com/halden/Tidewell"); }
QString properties() { return QStringLiteral("org.freedesktop.DBus.Properties"); }

QDBusMessage call(const QString& interface, const QString& method) {
  auto message = QDBusMessage::createMethodCall(service(), object(), interface, method);
  message.setAutoStartService(false);
  return message;
}

/// Calls `use` with the value of this name if it is there and of the type that `use` takes.
template <class Value, class Use>
void take(const QVariantMap& values, const char* name, const Use& use) {
  const auto found = values.find(QLatin1String(name));
  if (found != values.end() && found->metaType() == QMetaType::fromType<Value>()) {
    use(found->template value<Value>());
  }
}

template <class Value, class Target>
void mirror(const QVariantMap& values, const char* name, Published<Target>& target) {
  take<Value>(values, name, [&](const Value& value) { target.set(value); });
}

} // namespace

ResidentMirror::ResidentMirror(QDBusConnection bus)
    : m_bus(std::move(bus)),
      m_watcher(service(), m_bus, QDBusServiceWatcher::WatchForOwnerChange, this) {
  connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
          [this](const QString& /*name*/, const QString& /*before*/, const QString& owner) {
            if (owner.isEmpty()) {
              setThere(false);
            } else {
              fetch();
            }
          });
  m_bus.connect(service(), object(), properties(), QStringLiteral("PropertiesChanged"), this,
                SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
  m_bus.connect(service(), object(), service(), QStringLiteral("SampleAdded"), this,
                SLOT(sampleAdded(double, qlonglong, qlonglong, double, double, double)));
  fetch();
}

void ResidentMirror::request(const QString& method) { m_bus.send(call(service(), method)); }

void ResidentMirror::fetch() {
  auto message = call(properties(), QStringLiteral("GetAll"));
  message.setArguments({service()});
  auto* const pending = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
  connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
    const QDBusPendingReply<QVariantMap> reply = *pending;
    pending->deleteLater();
    if (reply.isError()) {
      setThere(false);
    } else {
      apply(reply.value());
      setThere(true);
    }
    Q_EMIT known();
  });
}

void ResidentMirror::propertiesChanged(const QString& interface, const QVariantMap& values,
                                       const QStringList& /*invalidated*/) {
  if (interface == service()) {
    apply(values);
  }
}

void ResidentMirror::sampleAdded(double time, qlonglong download, qlonglong upload, double latency,
                                 double jitter, double loss) {
  m_state.sampler.snapshots.mutate([&](SnapshotList& samples) {
    samples.push_back(
        std::make_shared<const NetworkSnapshot>(time, download, upload, latency, jitter, loss));
    if (samples.size() > mostMirroredSamples) {
      samples.erase(samples.begin());
    }
  });
}

void ResidentMirror::apply(const QVariantMap& values) {
  // The status follows from the sampler's values and from whether there is a connection, of which
  // the monitor's is the one that tells views.
  take<bool>(values, "IsConnected", [this](bool is) { m_state.sampler.isConnected = is; });
  take<QString>(values, "MenubarText",
                [this](const QString& text) { m_state.menubarText.set(text.toStdString()); });
  applyRates(values);
  applyConnection(values);
  applyResults(values);
}

void ResidentMirror::applyRates(const QVariantMap& values) {
  SamplerState& sampler = m_state.sampler;
  mirror<qlonglong>(values, "DownloadBytesPerSec", sampler.currentDownloadBytesPerSec);
  mirror<qlonglong>(values, "UploadBytesPerSec", sampler.currentUploadBytesPerSec);
  mirror<double>(values, "LatencyMs", sampler.latencyMs);
  mirror<double>(values, "JitterMs", sampler.jitterMs);
  mirror<double>(values, "PacketLossPercent", sampler.packetLossPercent);
  if (const auto samples = values.find(QLatin1String("Samples")); samples != values.end()) {
    sampler.snapshots.set(readSamples(*samples));
  }
}

void ResidentMirror::applyConnection(const QVariantMap& values) {
  MonitorState& monitor = m_state.monitor;
  ConnectionInfo info = monitor.connectionInfo.get();
  take<QString>(values, "InterfaceType", [&](const QString& name) {
    info.interfaceType = interfaceType(name.toStdString()).value_or(info.interfaceType);
  });
  const auto text = [&](const char* name, std::string& field) {
    take<QString>(values, name, [&](const QString& value) { field = value.toStdString(); });
  };
  text("NetworkName", info.networkName);
  text("InterfaceName", info.interfaceName);
  text("IpAddress", info.ipAddress);
  text("PublicIp", info.publicIP);
  text("Dns", info.dns);
  monitor.interfaceType.set(info.interfaceType);
  if (!(info == monitor.connectionInfo.get())) {
    monitor.connectionInfo.set(info);
  }
  mirror<bool>(values, "IsConnected", monitor.isConnected);
}

void ResidentMirror::applyResults(const QVariantMap& values) {
  if (const auto list = values.find(QLatin1String("Processes")); list != values.end()) {
    m_state.tracker.processes.set(readProcesses(*list));
  }
  // The result first, as the runner publishes it.
  if (const auto result = values.find(QLatin1String("LastSpeedTest")); result != values.end()) {
    m_state.speedTest.lastResult.set(readSpeedTest(*result));
  }
  mirror<bool>(values, "SpeedTestIsRunning", m_state.speedTest.isRunning);
}

void ResidentMirror::setThere(bool isThere) {
  if (m_state.isThere.get() != isThere) {
    m_state.isThere.set(isThere);
  }
}

} // namespace tidewell
