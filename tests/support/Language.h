#pragma once

#include "platform/linux/files/Catalogue.h"

#include <clocale>
#include <cstdlib>
#include <string>

namespace tidewell::test {

/// As long as it lives, texts are in this language of the catalogues in a directory. No locale
/// except C.UTF-8 has to be installed.
class Language {
public:
  Language(const std::string& directory, const std::string& name) {
    ::setenv("LC_ALL", "C.UTF-8", 1);
    ::setenv("LANGUAGE", name.c_str(), 1);
    loadCatalogue(directory);
  }
  Language(Language&&) = delete;
  ~Language() {
    ::unsetenv("LC_ALL");
    ::unsetenv("LANGUAGE");
    std::setlocale(LC_MESSAGES, "C");
  }
};

} // namespace tidewell::test
