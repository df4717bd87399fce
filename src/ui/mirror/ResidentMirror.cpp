#include "ui/mirror/ResidentMirror.h"

#include "bus/ResidentInterface.h"

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace tidewell {
namespace {

namespace face = residentInterface;

// As many as the resident publishes.
constexpr std::size_t mostSamples = 300;
constexpr std::size_t mostProcesses = 10;

QString service() { return QString::fromLatin1(face::name); }
QString object() { return QString::fromLatin1(face::path); }
QString properties() { return QStringLiteral("org.freedesktop.DBus.Properties"); }

// The types of the toolkit's bus library.
template <class Value> struct WireType { using Type = Value; };
template <> struct WireType<std::int64_t> { using Type = qlonglong; };
template <> struct WireType<std::string> { using Type = QString; };
template <class Value> using Wire = typename WireType<Value>::Type;

std::string plain(const QString& text) { return text.toStdString(); }
std::int64_t plain(qlonglong number) { return number; }
template <class Value> Value plain(Value value) { return value; }

/// Calls `use` with the property's value if it is there and has the right type.
template <class Value, class Use>
void take(const QVariantMap& values, const face::Property<Value>& property, const Use& use) {
  const auto found = values.find(QLatin1String(property.name));
  if (found != values.end() && found->metaType() == QMetaType::fromType<Wire<Value>>()) {
    use(plain(found->template value<Wire<Value>>()));
  }
}

/// Calls `read(value...)`, which assigns the fields of a record, then `use` with these fields.
template <class Record, class Read, class Use> void withFields(const Read& read, const Use& use) {
  const auto readAndUse = [&](auto... field) {
    std::tuple<Wire<face::FieldValue<Record, decltype(field)>>...> fields;
    std::apply(read, fields);
    std::apply([&](const auto&... value) { use(plain(value)...); }, fields);
  };
  std::apply(readAndUse, face::fieldsOf<Record>);
}

/// Calls `use` with the fields of each structure in the list. Returns whether the property is
/// there; a list of the wrong type is read as an empty one.
template <class Record, class Use>
bool takeList(const QVariantMap& values, const face::ListProperty<Record>& property,
              const Use& use) {
  const auto found = values.find(QLatin1String(property.name));
  if (found == values.end()) {
    return false;
  }
  const auto list = found->value<QDBusArgument>();
  const QString signature = QString::fromStdString(face::listSignatureOf<Record>());
  if (found->canConvert<QDBusArgument>() && list.currentSignature() == signature) {
    list.beginArray();
    while (!list.atEnd()) {
      list.beginStructure();
      withFields<Record>([&](auto&... value) { (list >> ... >> value); }, use);
      list.endStructure();
    }
    list.endArray();
  }
  return true;
}

void addSample(SnapshotList& samples, std::shared_ptr<const NetworkSnapshot> sample) {
  samples.push_back(std::move(sample));
  if (samples.size() > mostSamples) {
    samples.pop_front();
  }
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
  m_bus.connect(service(), object(), service(), QString::fromLatin1(face::sampleAdded),
                QString::fromStdString(face::signatureOf<NetworkSnapshot>()), this,
                SLOT(sampleAdded(QDBusMessage)));
  fetch();
}

void ResidentMirror::request(const char* method) {
  auto call =
      QDBusMessage::createMethodCall(service(), object(), service(), QString::fromLatin1(method));
  call.setAutoStartService(false);
  m_bus.send(call);
}

void ResidentMirror::fetch() {
  auto call =
      QDBusMessage::createMethodCall(service(), object(), properties(), QStringLiteral("GetAll"));
  call.setAutoStartService(false);
  call.setArguments({service()});
  auto* const pending = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
  connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
    const QDBusPendingReply<QVariantMap> reply = *pending;
    pending->deleteLater();
    if (!reply.isError()) {
      setAll(reply.value());
    }
    setThere(!reply.isError());
    Q_EMIT known();
  });
}

void ResidentMirror::propertiesChanged(const QString& interface, const QVariantMap& values,
                                       const QStringList& /*invalidated*/) {
  // The newest sample's properties are in it, too, but `sampleAdded` has set them already.
  if (interface == service()) {
    setChanged(values);
  }
}

void ResidentMirror::sampleAdded(const QDBusMessage& signal) {
  qsizetype index = 0;
  const auto arguments = signal.arguments();
  const auto read = [&](auto&... field) {
    ((field = arguments.value(index++).value<std::decay_t<decltype(field)>>()), ...);
  };
  withFields<NetworkSnapshot>(read, [this](auto... field) {
    const auto sample = std::make_shared<const NetworkSnapshot>(field...);
    face::forEachMetric([&](const auto& metric) {
      (m_state.sampler.*metric.newest).set((*sample.*metric.ofSample)());
    });
    m_state.sampler.snapshots.mutate([&](SnapshotList& samples) { addSample(samples, sample); });
  });
}

void ResidentMirror::setAll(const QVariantMap& values) {
  face::forEachMetric([&](const auto& metric) {
    take(values, metric.property, [&](auto value) { (m_state.sampler.*metric.newest).set(value); });
  });
  SnapshotList samples;
  // Trimmed with each, because a message has room for millions.
  if (takeList(values, face::samples, [&](auto... field) {
        addSample(samples, std::make_shared<const NetworkSnapshot>(field...));
      })) {
    m_state.sampler.snapshots.set(std::move(samples));
  }
  setChanged(values);
}

void ResidentMirror::setChanged(const QVariantMap& values) {
  // The sampler first: the status depends on it, and views read the status when the monitor
  // changes.
  take(values, face::isConnected, [this](bool is) { m_state.sampler.isConnected = is; });
  take(values, face::menubarText,
       [this](std::string text) { m_state.menubarText.set(std::move(text)); });
  setConnection(values);
  setResults(values);
}

void ResidentMirror::setConnection(const QVariantMap& values) {
  MonitorState& monitor = m_state.monitor;
  ConnectionInfo info = monitor.connectionInfo.get();
  take(values, face::interfaceType, [&](const std::string& name) {
    info.interfaceType = interfaceType(name).value_or(info.interfaceType);
  });
  for (const face::Detail& detail : face::details) {
    take(values, detail.property, [&](std::string text) { info.*detail.field = std::move(text); });
  }
  monitor.interfaceType.set(info.interfaceType);
  if (!(info == monitor.connectionInfo.get())) {
    monitor.connectionInfo.set(info);
  }
  take(values, face::isConnected, [&](bool is) { monitor.isConnected.set(is); });
}

void ResidentMirror::setResults(const QVariantMap& values) {
  std::vector<ProcessUsage> processes;
  if (takeList(values, face::processes, [&](auto... field) {
        if (processes.size() < mostProcesses) {
          processes.push_back(ProcessUsage{field...});
        }
      })) {
    m_state.tracker.processes.set(std::move(processes));
  }
  // The results before the end of the run, as the runner publishes them.
  const auto takeResult = [&](const auto& property, auto& published) {
    std::optional<SpeedTestResult> result;
    if (takeList(values, property, [&](auto... field) { result = SpeedTestResult{field...}; })) {
      published.set(result);
    }
  };
  takeResult(face::lastMeasuredSpeedTest, m_state.speedTest.lastMeasured);
  take(values, face::speedTestFailure,
       [this](std::string text) { m_state.speedTest.failure.set(std::move(text)); });
  takeResult(face::lastSpeedTest, m_state.speedTest.lastResult);
  take(values, face::speedTestIsRunning, [this](bool is) { m_state.speedTest.isRunning.set(is); });
}

void ResidentMirror::setThere(bool isThere) {
  if (m_state.isThere.get() != isThere) {
    m_state.isThere.set(isThere);
  }
}

} // namespace tidewell
