#pragma once

#include "ui/mirror/ResidentState.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QVariantMap>

namespace tidewell {

/// Keeps a `ResidentState` equal to what the resident publishes on the bus, and passes wishes to
/// it. Nothing waits for an answer. Main thread.
class ResidentMirror final : public QObject {
  Q_OBJECT

public:
  explicit ResidentMirror(QDBusConnection bus);

  [[nodiscard]] ResidentState& state() { return m_state; }

  /// Calls a method of the resident that takes and gives nothing back.
  void request(const QString& method);

Q_SIGNALS:
  /// The resident has answered for the first time, or it turned out that it does not run.
  void known();

public Q_SLOTS:
  // Of the bus's signals.
  void propertiesChanged(const QString& interface, const QVariantMap& values,
                         const QStringList& invalidated);
  void sampleAdded(double time, qlonglong download, qlonglong upload, double latency, double jitter,
                   double loss);

private:
  void fetch();
  void apply(const QVariantMap& values);
  void applyRates(const QVariantMap& values);
  void applyConnection(const QVariantMap& values);
  void applyResults(const QVariantMap& values);
  void setThere(bool isThere);

  QDBusConnection m_bus;
  QDBusServiceWatcher m_watcher;
  ResidentState m_state;
};

} // namespace tidewell
