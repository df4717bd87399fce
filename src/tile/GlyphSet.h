#pragma once

#include <cstdint>
#include <span>

namespace tidewell {

/// The characters that are prepared, in the order of their images: digits, ".", "-", "K", "M",
/// downwards arrow, upwards arrow. A blank needs no image.
enum class Glyph : std::uint8_t { zero = 0, dot = 10, hyphen, kilo, mega, down, up, count };

/// Coverage images of every `Glyph` in one size, made at build time.
struct GlyphSet {
  int advance;   ///< Width of every image, in pixels.
  int capHeight; ///< Height of digits and capitals, in pixels.
  int margin;    ///< Rows above and below the capitals that an image has besides.
  std::span<const std::uint8_t> images; ///< One byte per pixel, row by row, 255 is fully covered.

  [[nodiscard]] int rows() const { return capHeight + 2 * margin; }
};

/// Sets for two lines in a tile of 22 (and 44) pixels, one line in it, and the wide tile: widest
/// first, in all of them.
struct GlyphSets {
  std::span<const GlyphSet> twoLines22;
  std::span<const GlyphSet> oneLine22;
  std::span<const GlyphSet> twoLines44;
  std::span<const GlyphSet> oneLine44;
  std::span<const GlyphSet> wide;
};

/// The sets of the program, in its read-only data.
extern const GlyphSets glyphSets;

} // namespace tidewell
