#include "app/BusValues.h"

namespace tidewell {

namespace {

/// Appends an array of structures, each by `append(element)`.
int appendArray(sd_bus_message& message, const char* structure, const char* fields,
                const auto& elements, const auto& append) {
  int result = sd_bus_message_open_container(&message, 'a', structure);
  for (const auto& element : elements) {
    if (result >= 0) {
      result = sd_bus_message_open_container(&message, 'r', fields);
    }
    if (result >= 0) {
      result = append(element);
    }
    if (result >= 0) {
      result = sd_bus_message_close_container(&message);
    }
  }
  return result < 0 ? result : sd_bus_message_close_container(&message);
}

} // namespace

int appendSample(sd_bus_message& message, const NetworkSnapshot& sample) {
  return sd_bus_message_append(&message, busTypes::sample, sample.timestamp(),
                               sample.downloadBytesPerSec(), sample.uploadBytesPerSec(),
                               sample.latencyMs(), sample.jitterMs(), sample.packetLossPercent());
}

int appendSamples(sd_bus_message& message, const SnapshotList& samples) {
  return appendArray(message, "(dxxddd)", "dxxddd", samples,
                     [&](const auto& sample) { return appendSample(message, *sample); });
}

int appendProcesses(sd_bus_message& message, const std::vector<ProcessUsage>& processes) {
  return appendArray(message, "(isxxxd)", "isxxxd", processes, [&](const ProcessUsage& process) {
    return sd_bus_message_append(&message, "isxxxd", process.id, process.name.c_str(),
                                 process.downloadBytesPerSec, process.uploadBytesPerSec,
                                 process.totalBytes, process.usagePercent);
  });
}

int appendSpeedTest(sd_bus_message& message, const std::optional<SpeedTestResult>& result) {
  std::vector<SpeedTestResult> results;
  if (result) {
    results.push_back(*result);
  }
  return appendArray(message, "(dddx)", "dddx", results, [&](const SpeedTestResult& test) {
    return sd_bus_message_append(&message, "dddx", test.timestamp, test.downloadMbps,
                                 test.uploadMbps, test.responsiveness);
  });
}

std::string digestOf(const std::vector<ProcessUsage>& processes) {
  std::string text;
  for (const ProcessUsage& process : processes) {
    text += std::to_string(process.id) + ' ' + process.name + ' ' +
            std::to_string(process.downloadBytesPerSec) + ' ' +
            std::to_string(process.uploadBytesPerSec) + '\n';
  }
  return text;
}

} // namespace tidewell
