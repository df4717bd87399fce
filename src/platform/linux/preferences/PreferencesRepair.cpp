#include "platform/linux/preferences/PreferencesRepair.h"

#include "platform/linux/preferences/TomlDocument.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <vector>

namespace tidewell {

namespace {

// A line that is valid by itself.
struct Line {
  std::string_view text; // without its end
  std::optional<std::string> key;
  bool isHeader;
};

std::optional<Line> understood(std::string_view text) {
  const auto document = TomlDocument::parse(text);
  if (!document) {
    return std::nullopt;
  }
  const std::size_t start = text.find_first_not_of(" \t");
  const bool isHeader = start != std::string_view::npos && text[start] == '[';
  return Line{text, document->firstKey(), isHeader};
}

std::vector<Line> understoodLines(std::string_view text) {
  std::vector<Line> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r')) {
      line.remove_suffix(1);
    }
    if (auto good = understood(line)) {
      lines.push_back(*std::move(good));
    }
  }
  return lines;
}

std::string joined(const std::vector<Line>& lines) {
  std::string text;
  for (const Line& line : lines) {
    text.append(line.text).push_back('\n');
  }
  return text;
}

// Takes out every line whose name stands on a later line of the same section as well.
void dropEarlierNamesakes(std::vector<Line>& lines) {
  std::map<std::string, std::size_t> latest;
  std::vector<bool> isDropped(lines.size(), false);
  std::string section;
  for (std::size_t index = 0; index < lines.size(); ++index) {
    const Line& line = lines[index];
    if (line.isHeader) {
      section = line.text;
    } else if (line.key) {
      const auto [found, isNew] = latest.try_emplace(
          section + '\n' + std::string(line.text.substr(0, line.text.find('='))), index);
      if (!isNew) {
        isDropped[found->second] = true;
        found->second = index;
      }
    }
  }
  std::size_t index = 0;
  std::erase_if(lines, [&](const Line&) { return isDropped[index++]; });
}

// One line for each key at the top, and nothing else: whatever the rest was, this is valid.
std::string topAlone(const std::vector<Line>& lines) {
  std::map<std::string, std::string_view> latest;
  for (const Line& line : lines) {
    if (line.isHeader) {
      break;
    }
    if (line.key) {
      latest.insert_or_assign(*line.key, line.text);
    }
  }
  std::string text;
  for (const auto& [key, line] : latest) {
    text.append(line).push_back('\n');
  }
  return TomlDocument::parse(text) ? text : std::string();
}

} // namespace

std::string repairedPreferences(std::string_view text) {
  std::vector<Line> lines = understoodLines(text);
  dropEarlierNamesakes(lines);
  std::string repaired = joined(lines);
  return TomlDocument::parse(repaired) ? repaired : topAlone(lines);
}

} // namespace tidewell
