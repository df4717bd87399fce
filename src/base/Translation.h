#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace tidewell {

/// Marks an English text that is translated where it is shown. scripts/updateCatalogues collects
/// the texts in calls of this and of the functions below.
constexpr const char* translatable(const char* english) { return english; }

/// The text in the user's language as UTF-8; the English text without a translation. Valid as long
/// as the program runs.
[[nodiscard]] const char* translated(const char* english);

/// A reason that another process wrote in English. If it has no translation as a whole, its parts
/// before and after ": " are translated.
[[nodiscard]] std::string translatedReason(std::string_view english);

/// The pattern with the values in the places %1 to %9. Places without a value stay. Values may
/// contain anything.
[[nodiscard]] std::string filled(std::string_view pattern,
                                 std::initializer_list<std::string_view> values);

/// The name of the catalogues' domain for GNU gettext.
inline constexpr const char* catalogueDomain = "tidewell";

} // namespace tidewell
