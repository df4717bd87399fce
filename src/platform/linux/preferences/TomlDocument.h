#pragma once

#include "platform/PreferencesStore.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// A TOML text that has been understood. Whoever uses it does not see the TOML library.
class TomlDocument {
public:
  /// A range of bytes of the text.
  struct Span {
    std::size_t begin;
    std::size_t end;
  };

  /// None when the text is no valid TOML, or nests too deeply to be walked safely.
  [[nodiscard]] static std::optional<TomlDocument> parse(std::string_view text);

  TomlDocument(TomlDocument&& other) noexcept;
  TomlDocument& operator=(TomlDocument&& other) noexcept;
  TomlDocument(const TomlDocument&) = delete;
  TomlDocument& operator=(const TomlDocument&) = delete;
  ~TomlDocument();

  /// The keys at the top that hold a truth value, an integer, a number or a string.
  [[nodiscard]] PreferenceValues values() const;

  /// Whether the top has the key, whatever its type.
  [[nodiscard]] bool contains(std::string_view key) const;

  /// The first key at the top, by name; none when there is no key.
  [[nodiscard]] std::optional<std::string> firstKey() const;

  /// Where in `text`, from which this document was parsed, the key's value stands. A guess for
  /// anything but a value on one line: whoever splices there checks what comes of it.
  [[nodiscard]] std::optional<Span> valueSpan(std::string_view text, std::string_view key) const;

  /// Everything but this key as a TOML text of one form, whatever the form of what was parsed.
  [[nodiscard]] std::string textWithout(std::string_view key) const;

private:
  struct Table;

  explicit TomlDocument(std::unique_ptr<Table> table);

  std::unique_ptr<Table> m_table;
};

} // namespace tidewell
