#include "processes/NettopOutput.h"

#include "base/Checked.h"
#include "base/TextPieces.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>

namespace tidewell {
namespace {

constexpr std::size_t mostRows = 10;

/// One line, or all lines of one program.
struct Traffic {
  std::int32_t pid = 0;
  std::int64_t bytesIn = 0;
  std::int64_t bytesOut = 0;
};

struct Line {
  std::string_view name;
  Traffic traffic;
};

std::int64_t byteCount(std::string_view piece) {
  return parseInteger<std::int64_t>(trim(piece, " \t")).value_or(0);
}

std::optional<Line> parseLine(std::string_view text) {
  const auto pieces = splitAt(text, ',');
  if (pieces.size() < 3) {
    return std::nullopt;
  }
  auto process = splitAt(pieces[0], '.');
  std::erase(process, std::string_view{});
  if (process.size() < 2) {
    return std::nullopt;
  }
  const auto pid = parseInteger<std::int32_t>(process[1]).value_or(0);
  return Line{process[0], {pid, byteCount(pieces[1]), byteCount(pieces[2])}};
}

bool counts(const Line& line) {
  return (line.traffic.bytesIn > 0 || line.traffic.bytesOut > 0) && line.name != "kernel_task" &&
         line.name != "mDNSResponder";
}

using Table = std::map<std::string_view, Traffic>;

Table aggregate(std::string_view output) {
  Table table;
  const auto lines = splitAt(output, '\n');
  for (std::size_t index = 1; index < lines.size(); ++index) {
    const auto line = parseLine(lines[index]);
    if (!line || !counts(*line)) {
      continue;
    }
    const auto [entry, isNew] = table.try_emplace(line->name, line->traffic);
    if (!isNew) {
      Traffic& sum = entry->second;
      sum.bytesIn = checkedAdd(sum.bytesIn, line->traffic.bytesIn);
      sum.bytesOut = checkedAdd(sum.bytesOut, line->traffic.bytesOut);
    }
  }
  return table;
}

} // namespace

std::vector<ProcessUsage> parseNettopOutput(std::string_view output) {
  std::vector<ProcessUsage> rows;
  std::int64_t grandTotal = 0;
  for (const auto& [name, traffic] : aggregate(output)) {
    const std::int64_t total = checkedAdd(traffic.bytesIn, traffic.bytesOut);
    grandTotal = checkedAdd(grandTotal, total);
    rows.push_back({traffic.pid, std::string(name), traffic.bytesIn, traffic.bytesOut, total, 0.0});
  }
  if (grandTotal >= 1) {
    for (ProcessUsage& row : rows) {
      row.usagePercent = static_cast<double>(row.totalBytes) / static_cast<double>(grandTotal);
    }
  }
  std::ranges::stable_sort(rows, std::ranges::greater{}, &ProcessUsage::totalBytes);
  rows.resize(std::min(rows.size(), mostRows));
  return rows;
}

} // namespace tidewell
