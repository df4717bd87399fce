#include "platform/linux/files/Catalogue.h"

#include "base/TextPieces.h"
#include "base/Translation.h"
#include "platform/linux/files/FilePath.h"
#include "platform/linux/files/FileReading.h"

#include <algorithm>
#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <libintl.h>

namespace tidewell {
namespace {

// "The Format of GNU MO Files" in gettext's manual.
constexpr std::uint32_t magic = 0x950412de;
enum Field : std::size_t { fileMagic, revision, count, originals, translations, hashSize, fields };
constexpr std::size_t word = sizeof(std::uint32_t);

// Far more than the largest catalogue has.
constexpr std::size_t largestCatalogue = 1 << 20;

std::uint32_t wordAt(std::string_view file, std::size_t at) {
  std::uint32_t value = 0;
  std::memcpy(&value, file.data() + at, word);
  return value;
}

/// Whether a table of lengths and offsets lies in the file, and its strings, each with a zero byte
/// at its end.
bool isWholeTable(std::string_view file, std::size_t table, std::size_t rows) {
  if (table % word != 0 || table > file.size() || rows > (file.size() - table) / (2 * word)) {
    return false;
  }
  for (std::size_t row = 0; row < rows; ++row) {
    const std::size_t length = wordAt(file, table + 2 * row * word);
    const std::size_t offset = wordAt(file, table + (2 * row + 1) * word);
    if (offset >= file.size() || length >= file.size() - offset || file[offset + length] != '\0') {
      return false;
    }
  }
  return true;
}

/// The languages that the user wants: "pt_BR.UTF-8" stands for itself, "pt_BR" and "pt".
std::vector<std::string> wantedLanguages() {
  const char* const list = std::getenv("LANGUAGE");
  const std::string names =
      std::string(list == nullptr ? "" : list) + ':' + std::setlocale(LC_MESSAGES, nullptr);
  std::vector<std::string> languages;
  for (const std::string_view name : splitAt(names, ':')) {
    for (const char* const separators : {"", ".@", "._@"}) {
      std::string language(name.substr(0, name.find_first_of(separators)));
      if (!language.empty() && language.find('/') == std::string::npos) {
        languages.push_back(std::move(language));
      }
    }
  }
  return languages;
}

bool isDamaged(const std::string& path) {
  const FileReading file = readFile(path, largestCatalogue);
  return file.outcome != FileReading::Outcome::absent && !isWholeCatalogue(file.contents);
}

} // namespace

bool isWholeCatalogue(std::string_view file) {
  if (file.size() < (fields + 1) * word || wordAt(file, fileMagic * word) != magic ||
      wordAt(file, revision * word) != 0 || wordAt(file, hashSize * word) != 0) {
    return false;
  }
  const std::size_t rows = wordAt(file, count * word);
  const std::size_t first = wordAt(file, translations * word);
  if (rows == 0 || !isWholeTable(file, wordAt(file, originals * word), rows) ||
      !isWholeTable(file, first, rows)) {
    return false;
  }
  // The first translation describes the catalogue.
  const std::string_view header = file.data() + wordAt(file, first + word);
  return header.find("charset=UTF-8") != std::string_view::npos;
}

std::string catalogueDirectory(const std::string& program) {
  if (!program.starts_with('/')) {
    return "";
  }
  const std::string prefix = directoryOf(directoryOf(program));
  return (prefix == "/" ? "" : prefix) + "/share/locale";
}

void loadCatalogue(const std::string& directory) {
  const auto isUsable = [&] {
    if (directory.empty() || std::setlocale(LC_MESSAGES, "") == nullptr) {
      return false;
    }
    const bool hasDamage = std::ranges::any_of(wantedLanguages(), [&](const auto& language) {
      return isDamaged(directory + "/" + language + "/LC_MESSAGES/" + catalogueDomain + ".mo");
    });
    return !hasDamage && ::bindtextdomain(catalogueDomain, directory.c_str()) != nullptr &&
           ::bind_textdomain_codeset(catalogueDomain, "UTF-8") != nullptr &&
           *::dgettext(catalogueDomain, "") != '\0';
  };
  if (!isUsable()) {
    static_cast<void>(std::setlocale(LC_MESSAGES, "C"));
  }
}

} // namespace tidewell
