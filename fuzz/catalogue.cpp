// Any bytes as a catalogue of translations. Whatever a look-up in an accepted one reads lies in it:
// all texts of both tables with their last zero byte.

#include "platform/linux/files/Catalogue.h"
#include "support/Require.h"

#include <cstring>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using tidewell::fuzz::require;
  const std::string file(tidewell::fuzz::textOf(data, size));
  if (!tidewell::isWholeCatalogue(file)) {
    return 0;
  }
  const auto number = [&file](std::size_t at) {
    std::uint32_t value = 0;
    require(at + sizeof value <= file.size());
    std::memcpy(&value, &file[at], sizeof value);
    return std::size_t{value};
  };
  for (const std::size_t table : {number(12), number(16)}) {
    for (std::size_t row = 0; row < number(8); ++row) {
      const std::size_t end = number(table + 8 * row) + number(table + 8 * row + 4);
      require(end < file.size() && file[end] == '\0');
    }
  }
  require(number(20) == 0); // no hash table
  return 0;
}
