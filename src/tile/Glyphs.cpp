#include "tile/Glyphs.h"

#include <array>
#include <optional>
#include <utility>

namespace tidewell {
namespace {

constexpr std::array<std::pair<std::string_view, Glyph>, 6> symbols = {{
    {".", Glyph::dot},
    {"-", Glyph::hyphen},
    {"K", Glyph::kilo},
    {"M", Glyph::mega},
    {"\u2193", Glyph::down},
    {"\u2191", Glyph::up},
}};

// Removes one character, or one byte of an unknown one, from the front of the text.
std::optional<Glyph> takeGlyph(std::string_view& text) {
  if (text.front() >= '0' && text.front() <= '9') {
    const auto digit = static_cast<Glyph>(text.front() - '0');
    text.remove_prefix(1);
    return digit;
  }
  for (const auto& [symbol, glyph] : symbols) {
    if (text.starts_with(symbol)) {
      text.remove_prefix(symbol.size());
      return glyph;
    }
  }
  text.remove_prefix(1);
  return std::nullopt;
}

} // namespace

std::vector<TileWord> tileWords(std::string_view text) {
  std::vector<TileWord> words(1);
  while (!text.empty()) {
    const bool isBlank = text.front() == ' ';
    const auto glyph = takeGlyph(text);
    if (glyph) {
      words.back().glyphs.push_back(*glyph);
    } else if (isBlank && !words.back().glyphs.empty()) {
      words.emplace_back();
    }
  }
  if (words.back().glyphs.empty()) {
    words.pop_back();
  }
  return words;
}

} // namespace tidewell
