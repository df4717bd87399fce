#pragma once

#include "base/Published.h"
#include "connectivity/MonitorState.h"
#include "processes/TrackerState.h"
#include "sampling/SamplerState.h"
#include "speedtest/SpeedTestState.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QVariantMap>

#include <string>

namespace tidewell {

/// What the resident publishes, for views.
struct ResidentState {
  SamplerState sampler;
  MonitorState monitor;
  TrackerState tracker;
  SpeedTestState speedTest;
  /// The item's text.
  Published<std::string> menubarText{std::string("↓-- ↑--")};
  /// Whether the resident runs; while it does not, the other values stay as they were.
  Published<bool> isThere{true};
};

/// Keeps a `ResidentState` equal to what the resident publishes on the bus. Never waits for it.
///
/// Ignores values of the wrong type. Of lists that are too long it takes the newest 300 samples and
/// the first ten programs.
class ResidentMirror final : public QObject {
  Q_OBJECT

public:
  explicit ResidentMirror(QDBusConnection bus);

  [[nodiscard]] ResidentState& state() { return m_state; }

  /// Calls one of the methods of `residentInterface`.
  void request(const char* method);

  /// Takes over all properties, as GetAll returns them.
  void setAll(const QVariantMap& values);

Q_SIGNALS:
  /// The resident has answered for the first time, or does not run.
  void known();

public Q_SLOTS:
  // Signals of the bus.
  void propertiesChanged(const QString& interface, const QVariantMap& values,
                         const QStringList& invalidated);
  void sampleAdded(const QDBusMessage& signal);

private:
  void fetch();
  void setChanged(const QVariantMap& values);
  void setConnection(const QVariantMap& values);
  void setResults(const QVariantMap& values);
  void setThere(bool isThere);

  QDBusConnection m_bus;
  QDBusServiceWatcher m_watcher;
  ResidentState m_state;
};

} // namespace tidewell
