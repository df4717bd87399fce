#include "platform/linux/preferences/PreferencesText.h"

#include "platform/linux/preferences/TomlValue.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace tidewell {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

// A line, or several if its value has several.
struct Statement {
  enum class Kind { blank, comment, assignment, header, invalid };

  Kind kind = Kind::blank;
  std::string_view text;
  std::optional<std::string> key; // of an assignment, unless it is dotted
  std::size_t valueBegin = 0;
  std::size_t valueEnd = 0;
  TomlValue value;
};

void skipBlanks(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
}

bool skip(std::string_view& text, std::string_view expected) {
  const bool isThere = text.starts_with(expected);
  text.remove_prefix(isThere ? expected.size() : 0);
  return isThere;
}

void skipLine(std::string_view& text) {
  const std::size_t newline = text.find('\n');
  text.remove_prefix(newline == std::string_view::npos ? text.size() : newline + 1);
}

// Skips blanks, a comment and the end of the line. False if something else comes first.
bool skipLineEnd(std::string_view& text) {
  skipBlanks(text);
  const bool isEnd = text.empty() || text.front() == '#' || text.front() == '\n' || text == "\r" ||
                     text.starts_with("\r\n");
  skipLine(text);
  return isEnd;
}

// Reads a key. A dotted one has no name.
bool readKey(std::string_view& text, std::optional<std::string>& name) {
  bool isDotted = false;
  do {
    skipBlanks(text);
    auto part = readTomlKey(text);
    if (!part) {
      return false;
    }
    name = isDotted ? std::nullopt : std::move(part);
    isDotted = true;
    skipBlanks(text);
  } while (skip(text, "."));
  return true;
}

bool readHeader(std::string_view& text) {
  std::optional<std::string> name;
  const bool isOfArray = skip(text, "[[");
  return (isOfArray || skip(text, "[")) && readKey(text, name) &&
         skip(text, isOfArray ? "]]" : "]");
}

bool readAssignment(std::string_view& text, Statement& statement) {
  if (!readKey(text, statement.key) || !skip(text, "=")) {
    return false;
  }
  skipBlanks(text);
  statement.valueBegin = statement.text.size() - text.size();
  const auto value = readTomlValue(text);
  statement.valueEnd = statement.text.size() - text.size();
  statement.value = value.value_or(TomlValue{});
  return value.has_value();
}

// Removes the statement at the start of the text. An invalid one is a single line.
Statement takeStatement(std::string_view& text) {
  using Kind = Statement::Kind;
  Statement statement;
  statement.text = text;
  std::string_view rest = text;
  skipBlanks(rest);
  bool isValid = true;
  if (rest.starts_with('#')) {
    statement.kind = Kind::comment;
  } else if (rest.starts_with('[')) {
    statement.kind = Kind::header;
    isValid = readHeader(rest);
  } else if (std::string_view end = rest; !skipLineEnd(end)) {
    statement.kind = Kind::assignment;
    isValid = readAssignment(rest, statement);
  }
  if (!isValid || !skipLineEnd(rest)) {
    statement.kind = Kind::invalid;
    rest = text;
    skipLine(rest);
  }
  statement.text = text.substr(0, text.size() - rest.size());
  text = rest;
  return statement;
}

} // namespace

PreferencesText::PreferencesText(std::string_view text)
    : m_text(skip(text, byteOrderMark) ? byteOrderMark : ""), m_end(m_text.size()) {
  using Kind = Statement::Kind;
  std::size_t commentEnd = 0;
  while (!text.empty()) {
    const std::size_t begin = m_text.size();
    Statement statement = takeStatement(text);
    if (statement.kind == Kind::header) {
      m_text.append(statement.text).append(text);
      return;
    }
    if (statement.kind == Kind::invalid) {
      m_isIntact = false;
      continue;
    }
    m_text += statement.text;
    if (statement.key) {
      m_values.erase(*statement.key);
      if (statement.value.preference) {
        m_values.emplace(*statement.key, *std::move(statement.value.preference));
      }
      m_spans.insert_or_assign(*std::move(statement.key),
                               Span{begin + statement.valueBegin, begin + statement.valueEnd});
    }
    // A comment right above the first table belongs to the table.
    if (statement.kind == Kind::assignment) {
      m_end = m_text.size();
    } else if (statement.kind == Kind::comment) {
      commentEnd = m_text.size();
    } else {
      m_end = std::max(m_end, commentEnd);
    }
  }
  m_end = m_text.size();
}

void PreferencesText::set(std::string_view key, const PreferenceValue& value) {
  if (const auto stored = m_values.find(key);
      stored != m_values.end() && isSame(stored->second, value)) {
    return;
  }
  std::string text = m_text;
  if (const auto span = m_spans.find(key); span != m_spans.end()) {
    const auto [begin, end] = span->second;
    text.replace(begin, end - begin, tomlText(value));
  } else {
    text.insert(m_end, lineFor(key, value));
  }
  const bool wasIntact = m_isIntact;
  *this = PreferencesText(text);
  m_isIntact = wasIntact;
}

std::string PreferencesText::lineFor(std::string_view key, const PreferenceValue& value) const {
  const std::string_view newline = m_text.find("\r\n") == std::string::npos ? "\n" : "\r\n";
  const std::string_view before = std::string_view(m_text).substr(0, m_end);
  std::string_view after = std::string_view(m_text).substr(m_end);
  std::string line;
  if (!before.empty() && before != byteOrderMark && !before.ends_with('\n')) {
    line += before.ends_with('\r') ? "\n" : newline;
  }
  line.append(tomlKey(key)).append(" = ").append(tomlText(value)).append(newline);
  if (!after.empty() && takeStatement(after).kind != Statement::Kind::blank) {
    line += newline; // a table keeps its distance
  }
  return line;
}

} // namespace tidewell
