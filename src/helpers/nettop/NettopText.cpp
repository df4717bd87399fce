#include "helpers/nettop/NettopText.h"

#include "helpers/nettop/ProgramName.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>

namespace tidewell::nettop {
namespace {

constexpr const char* headerLine = ",bytes_in,bytes_out,\n";
constexpr std::size_t mostRows = 256;

// 256 rows of the longest name stay below what a pipe takes before its reader reads.
constexpr std::size_t longestName = 72;

// So that no sum over the rows overflows a reader's 64 bits.
constexpr std::uint64_t mostBytes = std::uint64_t{1} << 53;

std::string shortened(std::string_view name, std::size_t length) {
  const std::string printable = printableName(name);
  return printable.size() <= length ? printable
                                    : printableName(std::string_view(printable).substr(0, length));
}

/// What stands for no single program is in parentheses, which no program's name contains.
std::string shownName(const ProcessTraffic& row) {
  return row.process != 0 ? shortened(row.name, longestName)
                          : '(' + shortened(row.name, longestName - 2) + ')';
}

std::uint64_t cappedTotal(const ProcessTraffic& row) {
  return std::min(row.received, mostBytes) + std::min(row.sent, mostBytes);
}

void merge(ProcessTraffic& into, const ProcessTraffic& row) {
  into.received += std::min(row.received, mostBytes);
  into.sent += std::min(row.sent, mostBytes);
}

void sort(std::vector<ProcessTraffic>& rows) {
  std::ranges::stable_sort(rows, [](const ProcessTraffic& left, const ProcessTraffic& right) {
    return std::pair(cappedTotal(right), left.process) <
           std::pair(cappedTotal(left), right.process);
  });
}

/// Merges rows of the same name into the heaviest. The rows are sorted.
std::vector<ProcessTraffic> byName(const std::vector<ProcessTraffic>& rows) {
  std::map<std::string, std::size_t> places;
  std::vector<ProcessTraffic> merged;
  for (const ProcessTraffic& row : rows) {
    const auto [place, isNew] = places.try_emplace(row.name, merged.size());
    if (isNew) {
      merged.push_back(row);
    } else {
      merge(merged[place->second], row);
    }
  }
  sort(merged);
  return merged;
}

void cut(std::vector<ProcessTraffic>& rows) {
  ProcessTraffic others{"(others)"};
  while (rows.size() >= mostRows) {
    merge(others, rows.back());
    rows.pop_back();
  }
  rows.push_back(others);
}

std::string line(const ProcessTraffic& row) {
  return row.name + '.' + std::to_string(row.process) + ',' +
         std::to_string(std::min(row.received, mostBytes)) + ',' +
         std::to_string(std::min(row.sent, mostBytes)) + ",\n";
}

} // namespace

std::string nettopText(std::vector<ProcessTraffic> rows) {
  std::erase_if(rows, [](const ProcessTraffic& row) { return cappedTotal(row) == 0; });
  for (ProcessTraffic& row : rows) {
    row.name = shownName(row);
  }
  sort(rows);
  if (rows.size() > mostRows) {
    rows = byName(rows);
  }
  if (rows.size() > mostRows) {
    cut(rows);
  }
  std::string text = headerLine;
  for (const ProcessTraffic& row : rows) {
    text += line(row);
  }
  return text;
}

} // namespace tidewell::nettop
