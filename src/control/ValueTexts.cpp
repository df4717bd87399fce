#include "control/ValueTexts.h"

#include "base/DisplayText.h"
#include "base/NumberText.h"
#include "base/Translation.h"
#include "base/Utf8.h"
#include "control/JsonText.h"

#include <algorithm>
#include <utility>

namespace tidewell {
namespace {

namespace face = residentInterface;

constexpr const char* degraded = "degraded";
constexpr const char* down = "down";
constexpr const char* degradedColour = "#f0a020";
constexpr const char* downColour = "#e04040";
constexpr const char* ellipsis = "…";
constexpr std::uint32_t firstWide = 0x2E80;
constexpr std::size_t rateWidth = 10;

template <class Value> Value newest(const ResidentValues& values, const char* argument) {
  Value found{};
  face::forEachMetric([&](const auto& metric) {
    if constexpr (std::is_same_v<decltype(metric.property), face::Property<Value>>) {
      if (std::string_view(metric.argument) == argument) {
        found = values.of(metric.property);
      }
    }
  });
  return found;
}

std::string label(const ResidentValues& values) {
  return displayText(values.of(face::menubarText));
}

std::string status(const ResidentValues& values) { return displayText(values.of(face::status)); }

/// "excellent, latency 12.3 ms, jitter 0.4 ms, loss 0 %".
std::string measurements(const ResidentValues& values) {
  const auto latency = newest<double>(values, "latency");
  return filled(translated("%1, latency %2, jitter %3 ms, loss %4 %"),
                {translated(status(values).c_str()),
                 latency > 0 ? fixedText(latency, 1) + " ms" : "—",
                 fixedText(newest<double>(values, "jitter"), 1),
                 fixedText(newest<double>(values, "loss"), 0)});
}

void replaceAll(std::string& text, std::string_view found, std::string_view replacement) {
  for (auto at = text.find(found); at != std::string::npos;
       at = text.find(found, at + replacement.size())) {
    text.replace(at, found.size(), replacement);
  }
}

/// Waybar reads texts as Pango's markup.
std::string withoutMarkup(std::string text) {
  replaceAll(text, "&", "&amp;");
  replaceAll(text, "<", "&lt;");
  replaceAll(text, ">", "&gt;");
  return text;
}

std::string waybarLine(Presence presence, const ResidentValues& values) {
  JsonObject line;
  if (presence == Presence::present) {
    line.add("text", withoutMarkup(label(values)));
    line.add("class", withoutMarkup(status(values)));
    line.add("tooltip", withoutMarkup(measurements(values)));
  } else {
    line.add("text", "").add("class", "off").add("tooltip", statusLine(presence, values));
  }
  return line.text();
}

const char* colourOf(const ResidentValues& values) {
  const std::string word = values.of(face::status);
  return word == down ? downColour : word == degraded ? degradedColour : nullptr;
}

std::string i3barLine(Presence presence, const ResidentValues& values) {
  JsonObject block;
  block.add("name", "tidewell");
  block.add("full_text", presence == Presence::present ? label(values) : "");
  if (const char* const colour = colourOf(values); colour && presence == Presence::present) {
    block.add("color", colour);
  }
  return ",[" + block.text() + "]";
}

std::string polybarLine(Presence presence, const ResidentValues& values) {
  if (presence != Presence::present) {
    return {};
  }
  std::string text = label(values);
  replaceAll(text, "%{", "% {"); // begins a format tag
  const char* const colour = colourOf(values);
  return colour == nullptr ? text : std::string("%{F") + colour + "}" + text + "%{F-}";
}

std::string keyOf(std::string name) {
  if (!name.empty() && name[0] >= 'A' && name[0] <= 'Z') {
    name[0] = static_cast<char>(name[0] - 'A' + 'a');
  }
  return name;
}

struct Cell {
  std::size_t bytes;
  std::size_t columns;
};

/// The first character of a text that is not empty.
Cell firstCell(std::string_view text) {
  const auto character = firstCharacter(text);
  return {character ? character->size : 1,
          character && character->codePoint >= firstWide ? 2U : 1U};
}

std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  while (!text.empty()) {
    const Cell cell = firstCell(text);
    columns += cell.columns;
    text.remove_prefix(cell.bytes);
  }
  return columns;
}

/// The text in at least so many columns of a terminal.
std::string rightAligned(const std::string& text, std::size_t width) {
  const std::size_t own = columnsOf(text);
  return own < width ? std::string(width - own, ' ') + text : text;
}

} // namespace

std::string statusLine(Presence presence, const ResidentValues& values) {
  switch (presence) {
  case Presence::present:
    return label(values) + ", " + measurements(values);
  case Presence::silent:
    return translated("not responding");
  default:
    return translated("not running");
  }
}

std::string statusJson(Presence presence, const ResidentValues& values) {
  JsonObject object;
  object.add("running", presence != Presence::absent);
  if (presence == Presence::silent) {
    object.add("responding", false);
  }
  if (presence == Presence::present) {
    for (const auto& [name, value] : values.plain) {
      std::visit([&, &key = name](const auto& plain) { object.add(keyOf(key), plain); }, value);
    }
  }
  return object.text();
}

std::string_view followHeader(FollowFormat format) {
  // The bar would stop the program while it is hidden, and messages would accumulate in the bus.
  return format == FollowFormat::i3bar ? "{\"version\":1,\"stop_signal\":0}\n[\n[]\n" : "";
}

std::string followLine(FollowFormat format, Presence presence, const ResidentValues& values) {
  switch (format) {
  case FollowFormat::json:
    return statusJson(presence, values);
  case FollowFormat::waybar:
    return waybarLine(presence, values);
  case FollowFormat::i3bar:
    return i3barLine(presence, values);
  case FollowFormat::polybar:
    return polybarLine(presence, values);
  default:
    return statusLine(presence, values);
  }
}

std::string processTable(const ResidentValues& values, std::size_t columns) {
  const std::string download = translated("DOWNLOAD");
  const std::string upload = translated("UPLOAD");
  const std::size_t first = std::max(rateWidth, columnsOf(download));
  const std::size_t second = std::max(rateWidth, columnsOf(upload) + 2);
  std::string table = fitted(rightAligned(download, first) + rightAligned(upload, second) + "  " +
                                 translated("PROGRAM"),
                             columns);
  for (const ProcessUsage& process : values.processes) {
    const std::string row =
        rightAligned(ProcessUsage::formatBytes(process.downloadBytesPerSec), first) +
        rightAligned(ProcessUsage::formatBytes(process.uploadBytesPerSec), second) + "  " +
        displayText(process.name);
    table += "\n" + fitted(row, columns);
  }
  return table;
}

std::string processJson(const ResidentValues& values) {
  std::string array;
  for (const ProcessUsage& process : values.processes) {
    JsonObject object;
    object.add("id", static_cast<std::int64_t>(process.id)).add("name", process.name);
    object.add("downloadBytesPerSec", process.downloadBytesPerSec);
    object.add("uploadBytesPerSec", process.uploadBytesPerSec);
    object.add("totalBytes", process.totalBytes).add("share", process.usagePercent);
    array += (array.empty() ? "" : ",") + object.text();
  }
  return "[" + array + "]";
}

std::string speedTestText(const SpeedTestResult& result) {
  return filled(translated("Download %1 Mbit/s\nUpload %2 Mbit/s\nResponsiveness %3 RPM"),
                {fixedText(result.downloadMbps, 1), fixedText(result.uploadMbps, 1),
                 jsonText(result.responsiveness)});
}

std::string speedTestJson(const SpeedTestResult& result, const std::string& failure) {
  JsonObject object;
  if (failure.empty()) {
    object.add("time", result.timestamp).add("downloadMbps", result.downloadMbps);
    object.add("uploadMbps", result.uploadMbps).add("responsiveness", result.responsiveness);
  } else {
    object.add("failure", failure);
  }
  return object.text();
}

std::string progressText(int seconds, const ResidentValues& values, std::size_t columns) {
  return fitted(jsonText(static_cast<std::int64_t>(seconds)) + " s " + label(values), columns);
}

std::string fitted(std::string_view text, std::size_t columns) {
  std::size_t width = 0;
  std::size_t kept = 0; // bytes that leave a column for the ellipsis
  for (std::size_t at = 0; at < text.size();) {
    const Cell cell = firstCell(text.substr(at));
    width += cell.columns;
    if (columns != 0 && width > columns) {
      return std::string(text.substr(0, kept)) + ellipsis;
    }
    at += cell.bytes;
    if (width < columns) {
      kept = at;
    }
  }
  return std::string(text);
}

} // namespace tidewell
