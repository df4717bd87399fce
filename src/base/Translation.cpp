#include "base/Translation.h"

#include <cstddef>

#include <libintl.h>

namespace tidewell {

const char* translated(const char* english) {
  // The empty text stands for the catalogue's description.
  return *english == '\0' ? english : ::dgettext(catalogueDomain, english);
}

std::string translatedReason(std::string_view english) {
  constexpr std::string_view separator = ": ";
  std::string result;
  while (true) {
    const std::string whole(english);
    const char* const translation = translated(whole.c_str());
    const auto end = english.find(separator);
    if (translation != whole.c_str() || end == std::string_view::npos) {
      return result + translation;
    }
    result += translated(std::string(english.substr(0, end)).c_str());
    result += separator;
    english.remove_prefix(end + separator.size());
  }
}

std::string filled(std::string_view pattern, std::initializer_list<std::string_view> values) {
  std::string result;
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    const char digit = pattern[at] == '%' && at + 1 < pattern.size() ? pattern[at + 1] : '\0';
    if (digit >= '1' && digit <= '9' && static_cast<std::size_t>(digit - '1') < values.size()) {
      result += *(values.begin() + (digit - '1'));
      ++at;
    } else {
      result += pattern[at];
    }
  }
  return result;
}

} // namespace tidewell
