// Writes any value into any bytes as the preferences file. The result is intact, contains the value
// and keeps every other value. An intact file keeps all bytes around the value.

#include "platform/linux/preferences/PreferencesText.h"
#include "base/Utf8.h"
#include "support/Require.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <variant>

using tidewell::fuzz::require;

namespace {

using tidewell::isSame;
using tidewell::PreferencesText;
using tidewell::PreferenceValue;

constexpr std::array<const char*, 4> keys{"refreshInterval", "trackPerProcess", "a", "odd \"key\""};

PreferenceValue valueFrom(std::uint8_t choice, std::string_view bytes) {
  std::int64_t bits = 0;
  std::memcpy(&bits, bytes.data(), std::min(bytes.size(), sizeof bits));
  switch (choice % 4) {
  case 0:
    return (bits & 1) != 0;
  case 1:
    return bits;
  case 2: {
    double real = 0.0;
    std::memcpy(&real, &bits, sizeof real);
    return real;
  }
  default:
    return tidewell::validUtf8(bytes.substr(0, 16));
  }
}

// The bytes that were replaced.
std::string_view replaced(std::string_view before, std::string_view after) {
  const auto begin = std::ranges::mismatch(before, after).in1 - before.begin();
  before.remove_prefix(begin);
  after.remove_prefix(begin);
  const auto end =
      std::mismatch(before.rbegin(), before.rend(), after.rbegin(), after.rend()).first;
  return before.substr(0, before.rend() - end);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) {
    return 0;
  }
  const std::string_view text(reinterpret_cast<const char*>(data) + 2, size - 2);
  const std::string key = keys[data[0] % keys.size()];
  const PreferenceValue value = valueFrom(data[1], text);

  PreferencesText preferences(text);
  const tidewell::PreferenceValues before = preferences.values();
  const std::string beforeText = preferences.text();
  require(!preferences.isIntact() || beforeText == text);
  preferences.set(key, value);

  const PreferencesText again(preferences.text());
  require(again.isIntact());
  require(again.text() == preferences.text());
  require(isSame(again.values().at(key), value));
  for (const auto& [other, stored] : before) {
    require(other == key || isSame(again.values().at(other), stored));
  }
  require(again.values().size() == before.size() + (before.contains(key) ? 0 : 1));

  const std::string_view gone = replaced(beforeText, again.text());
  require(gone.empty() || text.find(key) != text.npos || text.find('\\') != text.npos);
  const bool wasWord = before.contains(key) && !std::holds_alternative<std::string>(before.at(key));
  require(!wasWord || gone.find_first_of("=#\n") == gone.npos);
  return 0;
}
