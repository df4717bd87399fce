#include "tile/TextTile.h"

#include "tile/Glyphs.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace tidewell {
namespace {

/// A colour without transparency.
struct Colour {
  std::uint8_t red;
  std::uint8_t green;
  std::uint8_t blue;
};

/// A picture of four bytes a pixel (alpha, red, green, blue; not premultiplied). Drawing outside of
/// it does nothing.
class TileCanvas {
public:
  /// `argb` holds `width` times `height` pixels and is borrowed.
  TileCanvas(std::span<std::uint8_t> argb, int width, int height)
      : m_argb(argb), m_width(width), m_height(height) {}

  /// Replaces everything with an opaque rectangle with smooth round corners.
  void fillRounded(Colour colour, double radius);

  /// Draws a glyph in a colour over the picture, with its upper left corner at `x`, `y`.
  void stamp(const GlyphSet& set, Glyph glyph, int x, int y, Colour colour);

private:
  [[nodiscard]] std::uint8_t* pixel(int x, int y) const {
    return &m_argb[(static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) +
                    static_cast<std::size_t>(x)) *
                   4];
  }

  std::span<std::uint8_t> m_argb;
  int m_width;
  int m_height;
};

// The share of a pixel, from 0 to 1, inside a rounded corner. `x` and `y` are its distances from
// the nearest two edges.
double cornerCoverage(int x, int y, double radius) {
  const double right = radius - (x + 0.5);
  const double down = radius - (y + 0.5);
  if (right <= 0 || down <= 0) {
    return 1;
  }
  return std::clamp(radius + 0.5 - std::hypot(right, down), 0.0, 1.0);
}

std::uint8_t blend(std::uint8_t below, std::uint8_t above, int coverage) {
  return static_cast<std::uint8_t>((below * (255 - coverage) + above * coverage + 127) / 255);
}

void TileCanvas::fillRounded(Colour colour, double radius) {
  for (int y = 0; y < m_height; ++y) {
    for (int x = 0; x < m_width; ++x) {
      const double coverage =
          cornerCoverage(std::min(x, m_width - 1 - x), std::min(y, m_height - 1 - y), radius);
      std::uint8_t* const target = pixel(x, y);
      target[0] = static_cast<std::uint8_t>(std::lround(255 * coverage));
      target[1] = colour.red;
      target[2] = colour.green;
      target[3] = colour.blue;
    }
  }
}

void TileCanvas::stamp(const GlyphSet& set, Glyph glyph, int x, int y, Colour colour) {
  const auto size = static_cast<std::size_t>(set.advance) * static_cast<std::size_t>(set.rows());
  const auto image = set.images.subspan(size * static_cast<std::size_t>(glyph), size);
  for (int row = std::max(0, -y); row < std::min(set.rows(), m_height - y); ++row) {
    for (int column = std::max(0, -x); column < std::min(set.advance, m_width - x); ++column) {
      const int coverage =
          image[static_cast<std::size_t>(row) * static_cast<std::size_t>(set.advance) +
                static_cast<std::size_t>(column)];
      std::uint8_t* const target = pixel(x + column, y + row);
      target[1] = blend(target[1], colour.red, coverage);
      target[2] = blend(target[2], colour.green, coverage);
      target[3] = blend(target[3], colour.blue, coverage);
    }
  }
}

constexpr Colour background{27, 31, 40};
constexpr Colour text{240, 243, 248};
constexpr Colour downloadAccent{63, 182, 255};
constexpr Colour uploadAccent{255, 180, 84};

/// The colours of a square tile.
struct SquareColours {
  Colour background;
  Colour download;
  Colour upload;
};

constexpr SquareColours darkSquare{background, {122, 206, 255}, {255, 201, 128}};
constexpr SquareColours lightSquare{{252, 252, 253}, {0, 88, 156}, {140, 68, 0}};

constexpr int wideHeight = 44;
constexpr int widePadding = 12;

using Glyphs = std::span<const Glyph>;

bool isArrow(Glyph glyph) { return glyph == Glyph::down || glyph == Glyph::up; }

Glyphs withoutArrow(const TileWord& word) {
  const Glyphs glyphs(word.glyphs);
  return !glyphs.empty() && isArrow(glyphs.front()) ? glyphs.subspan(1) : glyphs;
}

// A square has little room, so a dot takes half of it.
int squareAdvance(const GlyphSet& set, Glyph glyph) {
  return glyph == Glyph::dot ? (set.advance + 1) / 2 : set.advance;
}

int squareWidth(const GlyphSet& set, Glyphs line) {
  int width = 0;
  for (const Glyph glyph : line) {
    width += squareAdvance(set, glyph);
  }
  return width;
}

const GlyphSet& widestThatFits(std::span<const GlyphSet> sets, const std::vector<Glyphs>& lines,
                               int room) {
  const auto fits = [&](const GlyphSet& set) {
    return std::ranges::all_of(lines, [&](Glyphs line) { return squareWidth(set, line) <= room; });
  };
  const auto found = std::ranges::find_if(sets, fits);
  return found == sets.end() ? sets.back() : *found;
}

// Lines end at the right edge, so that units are aligned and do not move.
void drawSquareLine(TileCanvas& canvas, const GlyphSet& set, Glyphs line, int capTop, int right,
                    Colour colour) {
  int x = right - squareWidth(set, line);
  for (const Glyph glyph : line) {
    const int advance = squareAdvance(set, glyph);
    canvas.stamp(set, glyph, x - (set.advance - advance) / 2, capTop - set.margin, colour);
    x += advance;
  }
}

std::span<const GlyphSet> squareSets(int edge, std::size_t lines) {
  if (edge < 44) {
    return lines > 1 ? glyphSets.twoLines22 : glyphSets.oneLine22;
  }
  return lines > 1 ? glyphSets.twoLines44 : glyphSets.oneLine44;
}

} // namespace

void TextTile::drawSquare(std::string_view label, int edge, std::span<std::uint8_t> argb,
                          TileGround ground) {
  const SquareColours& colours = ground == TileGround::light ? lightSquare : darkSquare;
  TileCanvas canvas(argb, edge, edge);
  canvas.fillRounded(colours.background, edge / 4.4);
  std::vector<TileWord> words = tileWords(label);
  words.resize(std::min<std::size_t>(words.size(), 2));
  if (words.empty()) {
    return;
  }
  std::vector<Glyphs> lines;
  std::ranges::transform(words, std::back_inserter(lines), withoutArrow);
  const int padding = edge / 22;
  const GlyphSet& set = widestThatFits(squareSets(edge, lines.size()), lines, edge - 2 * padding);
  const int count = static_cast<int>(lines.size());
  const int gap = (edge - count * set.capHeight) / (count + 1);
  int capTop = (edge - count * set.capHeight - (count - 1) * gap) / 2;
  for (std::size_t index = 0; index < lines.size(); ++index) {
    drawSquareLine(canvas, set, lines[index], capTop, edge - padding,
                   words[index].isUpload() ? colours.upload : colours.download);
    capTop += set.capHeight + gap;
  }
}

TileSize TextTile::wideSize(std::string_view guide) {
  int columns = -1; // no blank before the first word
  for (const TileWord& word : tileWords(guide)) {
    columns += static_cast<int>(word.glyphs.size()) + 1;
  }
  return {std::max(columns, 1) * glyphSets.wide.front().advance + 2 * widePadding, wideHeight};
}

void TextTile::drawWide(std::string_view label, std::string_view guide,
                        std::span<std::uint8_t> argb) {
  const TileSize size = wideSize(guide);
  TileCanvas canvas(argb, size.width, size.height);
  canvas.fillRounded(background, size.height / 4.4);
  const std::vector<TileWord> places = tileWords(guide);
  const std::vector<TileWord> words = tileWords(label);
  const GlyphSet& set = glyphSets.wide.front();
  const int top = (size.height - set.rows()) / 2;
  int begin = widePadding;
  for (std::size_t index = 0; index < std::min(words.size(), places.size()); ++index) {
    int x = begin;
    for (const Glyph glyph : words[index].glyphs) {
      const Colour accent = words[index].isUpload() ? uploadAccent : downloadAccent;
      canvas.stamp(set, glyph, x, top, isArrow(glyph) ? accent : text);
      x += set.advance;
    }
    begin += set.advance * (static_cast<int>(places[index].glyphs.size()) + 1);
  }
}

} // namespace tidewell
