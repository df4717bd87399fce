#include "base/Utf8.h"

namespace tidewell {
namespace {

constexpr std::uint32_t highestCodePoint = 0x10FFFF;

struct LeadByte {
  std::size_t continuationBytes;
  std::uint32_t bits;
  std::uint32_t smallest; // below it the form is overlong
};

LeadByte readLead(unsigned char byte) {
  if (byte < 0x80) {
    return {0, byte, 0};
  }
  if ((byte & 0xE0U) == 0xC0) {
    return {1, byte & 0x1FU, 0x80};
  }
  if ((byte & 0xF0U) == 0xE0) {
    return {2, byte & 0x0FU, 0x800};
  }
  if ((byte & 0xF8U) == 0xF0) {
    return {3, byte & 0x07U, 0x10000};
  }
  return {0, 0, highestCodePoint + 1}; // never valid
}

} // namespace

std::optional<Utf8Character> firstCharacter(std::string_view bytes) {
  if (bytes.empty()) {
    return std::nullopt;
  }
  const LeadByte lead = readLead(static_cast<unsigned char>(bytes.front()));
  if (lead.continuationBytes >= bytes.size()) {
    return std::nullopt;
  }
  std::uint32_t codePoint = lead.bits;
  for (const char continuation : bytes.substr(1, lead.continuationBytes)) {
    const auto byte = static_cast<unsigned char>(continuation);
    if ((byte & 0xC0U) != 0x80) {
      return std::nullopt;
    }
    codePoint = codePoint << 6U | (byte & 0x3FU);
  }
  const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  if (codePoint < lead.smallest || codePoint > highestCodePoint || isSurrogate) {
    return std::nullopt;
  }
  return Utf8Character{codePoint, lead.continuationBytes + 1};
}

bool isUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto character = firstCharacter(bytes);
    if (!character) {
      return false;
    }
    bytes.remove_prefix(character->size);
  }
  return true;
}

std::string validUtf8(std::string_view bytes) {
  constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";
  std::string text;
  while (!bytes.empty()) {
    const auto character = firstCharacter(bytes);
    const std::size_t size = character ? character->size : 1;
    text += character ? bytes.substr(0, size) : replacementCharacter;
    bytes.remove_prefix(size);
  }
  return text;
}

} // namespace tidewell
