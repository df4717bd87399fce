#include "platform/linux/files/Catalogue.h"

#include "base/Translation.h"
#include "support/Language.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace tidewell::test {
namespace {

namespace fs = std::filesystem;

const std::string catalogues = TIDEWELL_CATALOGUES;

std::string german() {
  std::ifstream file(catalogues + "/de/LC_MESSAGES/tidewell.mo", std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Catalogues with these bytes as the German one.
std::string placeWith(const fs::path& place, const std::string& catalogue) {
  const fs::path folder = place / "de" / "LC_MESSAGES";
  fs::create_directories(folder);
  std::ofstream(folder / "tidewell.mo", std::ios::binary) << catalogue;
  return place;
}

TEST(CatalogueTest, TranslatesIntoTheUsersLanguage) {
  ASSERT_EQ(std::string(translated("Settings")), "Settings");
  const Language language(catalogues, "de");
  EXPECT_EQ(std::string(translated("Settings")), "Einstellungen");
}

TEST(CatalogueTest, TakesTheFirstLanguageOfSeveralThatHasACatalogue) {
  const Language language(catalogues, "xx:de:fr");
  EXPECT_EQ(std::string(translated("Settings")), "Einstellungen");
}

TEST(CatalogueTest, FindsALanguageOfACountryThatHasNoCatalogue) {
  const Language language(catalogues, "de_AT.UTF-8@euro");
  EXPECT_EQ(std::string(translated("Settings")), "Einstellungen");
}

TEST(CatalogueTest, MissingCatalogueMeansEnglish) {
  for (const char* const place : {"/nonexistent", ""}) {
    const Language language(place, "de");
    EXPECT_EQ(std::string(translated("Settings")), "Settings");
    EXPECT_EQ(std::string(std::setlocale(LC_MESSAGES, nullptr)), "C");
  }
}

TEST(CatalogueTest, LanguageWithoutACatalogueMeansEnglishForTheSystemToo) {
  const Language language(catalogues, "xx");
  EXPECT_EQ(std::string(std::setlocale(LC_MESSAGES, nullptr)), "C");
}

TEST(CatalogueTest, EmptyTextIsNotTheCataloguesDescription) {
  const Language language(catalogues, "de");
  EXPECT_EQ(std::string(translated("")), "");
}

TEST(CatalogueTest, NumbersStayInTheLocaleTheyWereIn) {
  const std::string before = std::setlocale(LC_NUMERIC, nullptr);
  const Language language(catalogues, "de");
  EXPECT_EQ(std::string(std::setlocale(LC_NUMERIC, nullptr)), before);
}

TEST(CatalogueTest, EveryShortenedCatalogueIsDamaged) {
  const std::string whole = german();
  ASSERT_TRUE(isWholeCatalogue(whole));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    // A copy of this size, so that sanitizers see a read behind it.
    const std::string part = whole.substr(0, size);
    ASSERT_FALSE(isWholeCatalogue(part)) << size;
  }
}

TEST(CatalogueTest, WildNumbersInEveryPlaceOfTheTablesAreDamage) {
  const std::string whole = german();
  std::uint32_t rows = 0;
  std::memcpy(&rows, &whole[8], sizeof rows);
  const std::size_t tables = 28 + 16 * std::size_t{rows};
  for (std::size_t at = 0; at < tables; at += 4) {
    for (const std::uint32_t wild : {0x7fffffffU, 0xffffffffU}) {
      std::string damaged = whole;
      std::memcpy(&damaged[at], &wild, sizeof wild);
      const bool isHashOffset = at == 24; // of a table that there is none of
      ASSERT_EQ(isWholeCatalogue(damaged), isHashOffset) << at;
    }
  }
}

TEST(CatalogueTest, DamagedCatalogueMeansEnglish) {
  const std::string whole = german();
  for (const std::string& damaged :
       {std::string(), std::string("no catalogue"), whole.substr(0, whole.size() / 2),
        whole.substr(0, whole.size() - 1), std::string(2 << 20, 'x')}) {
    const TemporaryDirectory place;
    const Language language(placeWith(place.path(), damaged), "de");
    EXPECT_EQ(std::string(translated("Settings")), "Settings");
    EXPECT_EQ(std::string(std::strerror(ENOENT)), "No such file or directory");
  }
}

TEST(CatalogueTest, AnInstallationFindsItsOwnCatalogues) {
  EXPECT_EQ(catalogueDirectory("/usr/local/bin/tidewell"), "/usr/local/share/locale");
  EXPECT_EQ(catalogueDirectory("/bin/tidewell"), "/share/locale");
  EXPECT_EQ(catalogueDirectory("tidewell"), "");
}

TEST(TranslationTest, ReasonsAreTranslatedAsAWholeOrInParts) {
  const Language language(catalogues, "de");
  const std::string reached = translated("the server cannot be reached");
  const std::string useless = translated("the configuration document is of no use");
  EXPECT_NE(reached, "the server cannot be reached");
  EXPECT_EQ(translatedReason("the server cannot be reached"), reached);
  EXPECT_EQ(
      translatedReason("the configuration document is of no use: the server cannot be reached"),
      useless + ": " + reached);
  EXPECT_EQ(translatedReason("foreign: words"), "foreign: words");
  EXPECT_EQ(translatedReason(""), "");
}

} // namespace
} // namespace tidewell::test
