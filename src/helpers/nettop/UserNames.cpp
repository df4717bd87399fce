#include "helpers/nettop/UserNames.h"

#include "base/TextPieces.h"
#include "platform/linux/files/FileReading.h"

#include <limits>

namespace tidewell::nettop {

namespace {

constexpr std::size_t largestFile = 4 << 20;

} // namespace

UserNames parseUserNames(std::string_view text) {
  UserNames names;
  for (const std::string_view line : splitAt(text, '\n')) {
    const auto fields = splitAt(line, ':');
    if (fields.size() < 3 || fields[0].empty()) {
      continue;
    }
    const auto number = parseInteger<std::int64_t>(fields[2]);
    if (number && *number >= 0 && *number <= std::numeric_limits<std::uint32_t>::max()) {
      names.try_emplace(static_cast<std::uint32_t>(*number), fields[0]);
    }
  }
  return names;
}

UserNames localUserNames() { return parseUserNames(readFile("/etc/passwd", largestFile).contents); }

} // namespace tidewell::nettop
