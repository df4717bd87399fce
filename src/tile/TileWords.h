#pragma once

#include "tile/GlyphSet.h"

#include <string_view>
#include <vector>

namespace tidewell {

/// One word of the panel's text, in glyphs: an arrow and a rate.
struct TileWord {
  std::vector<Glyph> glyphs;

  /// Whether the word speaks of the upload: its arrow points upwards.
  [[nodiscard]] bool isUpload() const { return !glyphs.empty() && glyphs.front() == Glyph::up; }
};

/// The words of a text, which blanks part. Characters without a glyph are left out.
[[nodiscard]] std::vector<TileWord> tileWords(std::string_view text);

} // namespace tidewell
