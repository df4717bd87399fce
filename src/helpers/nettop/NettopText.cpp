#include "helpers/nettop/NettopText.h"

#include "base/DisplayText.h"

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
  ProcessTraffic others{"others"};
  while (rows.size() >= mostRows) {
    merge(others, rows.back());
    rows.pop_back();
  }
  rows.push_back(others);
}

constexpr std::string_view replacement = "\uFFFD";

std::string inPlainCharacters(const std::string& text) {
  std::string name;
  for (std::size_t index = 0; index < text.size();) {
    if (std::string_view(text).substr(index).starts_with(replacement)) {
      name += '_';
      index += replacement.size();
      continue;
    }
    name += text[index] == '.' || text[index] == ',' ? '_' : text[index];
    ++index;
  }
  return name;
}

std::string line(const ProcessTraffic& row) {
  std::string name = printableName(row.name);
  if (name.size() > longestName) {
    name = printableName(std::string_view(name).substr(0, longestName));
  }
  return name + '.' + std::to_string(row.process) + ',' +
         std::to_string(std::min(row.received, mostBytes)) + ',' +
         std::to_string(std::min(row.sent, mostBytes)) + ",\n";
}

} // namespace

std::string printableName(std::string_view bytes) {
  std::string name = inPlainCharacters(displayText(bytes));
  // The resident's reader skips these two names, which on another system are the kernel and a
  // system service. Here they are ordinary programs, and are shown under a changed name.
  if (name.empty() || name == "kernel_task" || name == "mDNSResponder") {
    name += '_';
  }
  return name;
}

std::string nettopText(std::vector<ProcessTraffic> rows) {
  std::erase_if(rows, [](const ProcessTraffic& row) { return cappedTotal(row) == 0; });
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
