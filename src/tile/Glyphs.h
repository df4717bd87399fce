#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace tidewell {

/// The characters that have images, in the order of the images: digits, ".", "-", "K", "M",
/// downwards arrow, upwards arrow. A blank needs no image.
enum class Glyph : std::uint8_t { zero = 0, dot = 10, hyphen, kilo, mega, down, up, count };

/// Coverage images of every `Glyph` in one size, made at build time.
struct GlyphSet {
  int advance;                          ///< Width of every image, in pixels.
  int capHeight;                        ///< Height of digits and capitals, in pixels.
  int margin;                           ///< Rows of the image above and below the capitals.
  std::span<const std::uint8_t> images; ///< One byte per pixel, row by row, 255 is fully covered.

  [[nodiscard]] int rows() const { return capHeight + 2 * margin; }
};

/// Sets for two lines or one line in a tile of 22 or 44 pixels, and for the wide tile. Each list
/// begins with the widest set.
struct GlyphSets {
  std::span<const GlyphSet> twoLines22;
  std::span<const GlyphSet> oneLine22;
  std::span<const GlyphSet> twoLines44;
  std::span<const GlyphSet> oneLine44;
  std::span<const GlyphSet> wide;
};

/// The sets of the program, in its read-only data.
extern const GlyphSets glyphSets;

/// One word of the panel's text: an arrow and a rate.
struct TileWord {
  std::vector<Glyph> glyphs;

  /// Whether the word is about the upload: its arrow points upwards.
  [[nodiscard]] bool isUpload() const { return !glyphs.empty() && glyphs.front() == Glyph::up; }
};

/// The words of a text, which are separated by blanks. Skips characters without a glyph.
[[nodiscard]] std::vector<TileWord> tileWords(std::string_view text);

} // namespace tidewell
