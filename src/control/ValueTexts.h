#pragma once

#include "control/CommandLine.h"
#include "control/ResidentValues.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tidewell {

/// The values on one line: "↓12K ↑3K, excellent, latency 12.3 ms, jitter 0.4 ms, loss 0 %". If the
/// resident is absent or silent, "not running" or "not responding".
[[nodiscard]] std::string statusLine(Presence presence, const ResidentValues& values);

/// The plain properties as a JSON object. A key is the property's name with a small first letter;
/// `running` and `responding` describe the resident.
[[nodiscard]] std::string statusJson(Presence presence, const ResidentValues& values);

/// What `follow` prints before the first line, with a line feed; empty for most formats.
[[nodiscard]] std::string_view followHeader(FollowFormat format);

/// A line of `follow`, without a line feed. Foreign text is escaped as the format requires.
[[nodiscard]] std::string followLine(FollowFormat format, Presence presence,
                                     const ResidentValues& values);

/// The programs as a table with a heading, one line each.
[[nodiscard]] std::string processTable(const ResidentValues& values, std::size_t columns);

/// The programs as a JSON array on one line.
[[nodiscard]] std::string processJson(const ResidentValues& values);

/// The result of the speed test, three lines.
[[nodiscard]] std::string speedTestText(const SpeedTestResult& result);

/// The result of the speed test as a JSON object; only the failure if there is one.
[[nodiscard]] std::string speedTestJson(const SpeedTestResult& result, const std::string& failure);

/// What the terminal shows during a speed test.
[[nodiscard]] std::string progressText(int seconds, const ResidentValues& values,
                                       std::size_t columns);

/// Makes a text fit into so many columns of a terminal, with "…" at its end if it was cut. Zero
/// columns mean no limit. Characters from U+2E80 count as two columns, which many of them take.
[[nodiscard]] std::string fitted(std::string_view text, std::size_t columns);

} // namespace tidewell
