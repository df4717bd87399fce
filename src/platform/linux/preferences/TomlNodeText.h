#pragma once

#include "platform/PreferencesStore.h"
#include "platform/linux/preferences/TomlLibrary.h"

#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// The node's value when it has one of the types that preferences have.
[[nodiscard]] std::optional<PreferenceValue> preferenceValue(const toml::node& node);

/// Everything in the table but one key at the top, as text: what stands at the top on a line each,
/// tables below their headers, everything further down on one line. Two tables of the same
/// contents give the same text, for which comparing them would not do: a not-a-number differs from
/// itself. (The library's own writer is not used: an infinity in an array makes it compute with
/// an integer that is none.)
[[nodiscard]] std::string tomlText(const toml::table& table, std::string_view withoutKey);

} // namespace tidewell
