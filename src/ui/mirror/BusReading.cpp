#include "ui/mirror/BusReading.h"

#include <QDBusArgument>

#include <cstddef>
#include <memory>

namespace tidewell {

namespace {

constexpr std::size_t mostProcesses = 10;

/// The argument, if it has this signature.
std::optional<QDBusArgument> argumentOf(const QVariant& value, const char* signature) {
  if (!value.canConvert<QDBusArgument>()) {
    return std::nullopt;
  }
  const auto argument = value.value<QDBusArgument>();
  return argument.currentSignature() == QLatin1String(signature) ? std::optional(argument)
                                                                 : std::nullopt;
}

template <class Read> void readAll(const QDBusArgument& argument, Read&& read) {
  argument.beginArray();
  while (!argument.atEnd()) {
    argument.beginStructure();
    read();
    argument.endStructure();
  }
  argument.endArray();
}

} // namespace

SnapshotList readSamples(const QVariant& value) {
  SnapshotList samples;
  if (const auto argument = argumentOf(value, "a(dxxddd)")) {
    readAll(*argument, [&] {
      double time = 0.0;
      qlonglong download = 0;
      qlonglong upload = 0;
      double latency = 0.0;
      double jitter = 0.0;
      double loss = 0.0;
      *argument >> time >> download >> upload >> latency >> jitter >> loss;
      samples.push_back(
          std::make_shared<const NetworkSnapshot>(time, download, upload, latency, jitter, loss));
      // At once: a message has room for millions.
      if (samples.size() > mostMirroredSamples) {
        samples.pop_front();
      }
    });
  }
  return samples;
}

std::vector<ProcessUsage> readProcesses(const QVariant& value) {
  std::vector<ProcessUsage> processes;
  if (const auto argument = argumentOf(value, "a(isxxxd)")) {
    readAll(*argument, [&] {
      int id = 0;
      QString name;
      qlonglong download = 0;
      qlonglong upload = 0;
      qlonglong total = 0;
      double share = 0.0;
      *argument >> id >> name >> download >> upload >> total >> share;
      if (processes.size() < mostProcesses) {
        processes.push_back({id, name.toStdString(), download, upload, total, share});
      }
    });
  }
  return processes;
}

std::optional<SpeedTestResult> readSpeedTest(const QVariant& value) {
  std::optional<SpeedTestResult> result;
  if (const auto argument = argumentOf(value, "a(dddx)")) {
    readAll(*argument, [&] {
      SpeedTestResult read;
      qlonglong responsiveness = 0;
      *argument >> read.timestamp >> read.downloadMbps >> read.uploadMbps >> responsiveness;
      read.responsiveness = responsiveness;
      result = read;
    });
  }
  return result;
}

} // namespace tidewell
