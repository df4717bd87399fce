#include "platform/linux/preferences/TomlDocument.h"

#include "platform/linux/preferences/TomlLibrary.h"
#include "platform/linux/preferences/TomlNesting.h"
#include "platform/linux/preferences/TomlNodeText.h"

#include <utility>

namespace tidewell {

struct TomlDocument::Table {
  toml::table root;
};

namespace {

// Each dot of a key is a level of nesting, and the library bounds only that of brackets: a
// megabyte of dots would end the stack.
constexpr std::size_t mostDots = 2000;

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

// The library counts lines and, within a line, characters, both from one and after the mark.
std::optional<std::size_t> offsetOf(std::string_view text, const toml::source_position& position) {
  std::size_t offset = text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0;
  for (toml::source_index line = 1; line < position.line; ++line) {
    const std::size_t newline = text.find('\n', offset);
    if (newline == std::string_view::npos) {
      return std::nullopt;
    }
    offset = newline + 1;
  }
  for (toml::source_index column = 1; column < position.column && offset < text.size(); ++column) {
    do {
      ++offset;
    } while (offset < text.size() && (static_cast<unsigned char>(text[offset]) & 0xC0U) == 0x80U);
  }
  return offset;
}

} // namespace

std::optional<TomlDocument> TomlDocument::parse(std::string_view text) {
  if (tomlDots(text) > mostDots) {
    return std::nullopt;
  }
  toml::parse_result result = toml::parse(text);
  if (!result) {
    return std::nullopt;
  }
  return TomlDocument(std::make_unique<Table>(Table{std::move(result).table()}));
}

TomlDocument::TomlDocument(std::unique_ptr<Table> table) : m_table(std::move(table)) {}
TomlDocument::TomlDocument(TomlDocument&& other) noexcept = default;
TomlDocument& TomlDocument::operator=(TomlDocument&& other) noexcept = default;
TomlDocument::~TomlDocument() = default;

PreferenceValues TomlDocument::values() const {
  PreferenceValues values;
  for (const auto& [key, node] : m_table->root) {
    if (auto value = preferenceValue(node)) {
      values.emplace(key.str(), *std::move(value));
    }
  }
  return values;
}

bool TomlDocument::contains(std::string_view key) const { return m_table->root.contains(key); }

std::optional<std::string> TomlDocument::firstKey() const {
  if (m_table->root.empty()) {
    return std::nullopt;
  }
  return std::string(m_table->root.cbegin()->first.str());
}

std::optional<TomlDocument::Span> TomlDocument::valueSpan(std::string_view text,
                                                          std::string_view key) const {
  const toml::node* const node = m_table->root.get(key);
  if (node == nullptr || !node->source().begin || !node->source().end) {
    return std::nullopt;
  }
  const auto begin = offsetOf(text, node->source().begin);
  const auto end = offsetOf(text, node->source().end);
  if (!begin || !end || *begin > *end) {
    return std::nullopt;
  }
  return Span{*begin, *end};
}

std::string TomlDocument::textWithout(std::string_view key) const {
  return tomlText(m_table->root, key);
}

} // namespace tidewell
