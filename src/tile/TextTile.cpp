#include "tile/TextTile.h"

#include "tile/GlyphSet.h"
#include "tile/TileCanvas.h"
#include "tile/TileWords.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace tidewell {

namespace {

constexpr Colour background{27, 31, 40};
constexpr Colour text{240, 243, 248};
constexpr Colour downloadAccent{63, 182, 255};
constexpr Colour uploadAccent{255, 180, 84};
constexpr Colour downloadText{122, 206, 255};
constexpr Colour uploadText{255, 201, 128};

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

// Lines end at the right edge: units stand below each other and stay where they are.
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

int columns(const TileWord& word) { return static_cast<int>(word.glyphs.size()); }

// Where each word of the guide begins, and where one after them would.
std::vector<int> wordStarts(const std::vector<TileWord>& words) {
  std::vector<int> starts{0};
  for (const TileWord& word : words) {
    starts.push_back(starts.back() + columns(word) + 1);
  }
  return starts;
}

} // namespace

void TextTile::drawSquare(std::string_view label, int edge, std::span<std::uint8_t> argb) {
  TileCanvas canvas(argb, edge, edge);
  canvas.fillRounded(background, edge / 4.4);
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
                   words[index].isUpload() ? uploadText : downloadText);
    capTop += set.capHeight + gap;
  }
}

TileSize TextTile::wideSize(std::string_view guide) {
  const int textColumns = wordStarts(tileWords(guide)).back() - 1;
  return {std::max(textColumns, 1) * glyphSets.wide.front().advance + 2 * widePadding, wideHeight};
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
