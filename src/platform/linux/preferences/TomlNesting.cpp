#include "platform/linux/preferences/TomlNesting.h"

#include <algorithm>

namespace tidewell {

namespace {

void skip(std::string_view& text, std::size_t count) {
  text.remove_prefix(std::min(count, text.size()));
}

// Up to the quote that ends it; at the start stands the first character after the opening quote.
void skipString(std::string_view& text, char quote) {
  while (!text.empty() && text.front() != quote && text.front() != '\n') {
    skip(text, quote == '"' && text.front() == '\\' ? 2 : 1);
  }
  skip(text, 1);
}

void skipMultiLineString(std::string_view& text, std::string_view quotes) {
  while (!text.empty() && !text.starts_with(quotes)) {
    skip(text, quotes.front() == '"' && text.front() == '\\' ? 2 : 1);
  }
  skip(text, quotes.size());
  // Of up to five quotes in a row the last three end the string.
  for (int extra = 0; extra < 2 && text.starts_with(quotes.front()); ++extra) {
    skip(text, 1);
  }
}

} // namespace

std::size_t tomlDots(std::string_view text) {
  std::size_t dots = 0;
  while (!text.empty()) {
    const char character = text.front();
    if (character == '#') {
      skip(text, text.find('\n'));
    } else if (text.starts_with(R"(""")") || text.starts_with("'''")) {
      const std::string_view quotes = text.substr(0, 3);
      skip(text, 3);
      skipMultiLineString(text, quotes);
    } else if (character == '"' || character == '\'') {
      skip(text, 1);
      skipString(text, character);
    } else {
      dots += character == '.' ? 1 : 0;
      skip(text, 1);
    }
  }
  return dots;
}

} // namespace tidewell
