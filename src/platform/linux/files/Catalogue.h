#pragma once

#include <string>
#include <string_view>

namespace tidewell {

/// Makes `translated` use the catalogue of the user's language, by the environment's LANGUAGE,
/// LC_ALL, LC_MESSAGES and LANG. Without a catalogue, or if it is damaged, all messages of this
/// process are English, the system's too. Changes no other part of the locale. No other thread
/// may use the locale meanwhile. `directory` has a catalogue in LANGUAGE/LC_MESSAGES.
void loadCatalogue(const std::string& directory);

/// The directory of the catalogues for a program at this absolute path, two directories below the
/// installation's: `share/locale` there. Empty if the path is not absolute. Pure.
[[nodiscard]] std::string catalogueDirectory(const std::string& program);

/// Whether a file is a catalogue that GNU gettext can read safely: it trusts every offset in it. It
/// must be of this machine's byte order, in UTF-8 and without a hash table, with which a look-up
/// may not end.
[[nodiscard]] bool isWholeCatalogue(std::string_view file);

} // namespace tidewell
