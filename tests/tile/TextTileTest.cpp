#include "tile/TextTile.h"

#include "tile/Glyphs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace tidewell::test {
namespace {

const std::vector<std::string> labels = {"↓0K ↑0K",       "↓12K ↑3K",       "↓1.2M ↑456K",
                                         "↓99.9M ↑1000K", "↓10000M ↑1250M", "↓-- ↑--",
                                         "↓12K",          "↓100.0M"};

class Tile {
public:
  Tile(TileSize tileSize, const auto& draw) : size(tileSize), m_argb(tileSize.bytes(), 0xAA) {
    draw(m_argb);
  }

  /// Whether a pixel differs from the background, which is the colour of the middle of the top row.
  [[nodiscard]] bool isInk(int x, int y) const {
    return !std::equal(at(x, y) + 1, at(x, y) + 4, at(size.width / 2, 0) + 1);
  }
  [[nodiscard]] std::uint8_t alpha(int x, int y) const { return *at(x, y); }
  [[nodiscard]] int inkOfColumn(int x) const {
    int ink = 0;
    for (int y = 0; y < size.height; ++y) {
      ink += isInk(x, y) ? 1 : 0;
    }
    return ink;
  }
  [[nodiscard]] bool hasAmber(int x) const {
    for (int y = 0; y < size.height; ++y) {
      if (at(x, y)[1] > at(x, y)[3] + 60) {
        return true;
      }
    }
    return false;
  }
  [[nodiscard]] int ink() const {
    int ink = 0;
    for (int x = 0; x < size.width; ++x) {
      ink += inkOfColumn(x);
    }
    return ink;
  }
  /// Whether the middle row is opaque: all bytes were written in the right order.
  [[nodiscard]] bool isOpaqueInside() const {
    for (int x = 4; x < size.width - 4; ++x) {
      if (alpha(x, size.height / 2) != 0xFF) {
        return false;
      }
    }
    return true;
  }

  TileSize size;

private:
  [[nodiscard]] const std::uint8_t* at(int x, int y) const {
    return &m_argb[static_cast<std::size_t>(y * size.width + x) * 4];
  }
  std::vector<std::uint8_t> m_argb;
};

Tile square(const std::string& label, int edge) {
  return {TileSize{edge, edge}, [&](auto& argb) { TextTile::drawSquare(label, edge, argb); }};
}

Tile wide(const std::string& label) {
  return {TextTile::wideSize(labelGuide),
          [&](auto& argb) { TextTile::drawWide(label, labelGuide, argb); }};
}

/// The first column with a pixel of this kind; the tile's width if there is none.
int firstColumn(const Tile& tile, const auto& isWanted) {
  int column = 0;
  while (column < tile.size.width && !isWanted(column)) {
    ++column;
  }
  return column;
}

int firstInk(const Tile& tile) {
  return firstColumn(tile, [&](int x) { return tile.inkOfColumn(x) > 0; });
}

/// The first column of the upload's arrow, which alone is amber.
int firstAmber(const Tile& tile) {
  return firstColumn(tile, [&](int x) { return tile.hasAmber(x); });
}

TEST(SquareTile, IsOpaqueWithRoundCorners) {
  for (const int edge : {22, 44}) {
    const Tile tile = square("↓12K ↑3K", edge);
    EXPECT_TRUE(tile.isOpaqueInside());
    EXPECT_LT(tile.alpha(0, 0), 128);
    EXPECT_LT(tile.alpha(edge - 1, edge - 1), 128);
  }
}

TEST(SquareTile, KeepsEveryTextInsideItsEdges) {
  for (const int edge : {22, 44}) {
    for (const std::string& label : labels) {
      const Tile tile = square(label, edge);
      EXPECT_GT(tile.ink(), edge) << label;
      EXPECT_EQ(tile.inkOfColumn(0), 0) << label << " at " << edge;
      EXPECT_EQ(tile.inkOfColumn(edge - 1), 0) << label << " at " << edge;
    }
  }
}

TEST(SquareTile, HasAmberForTheUploadAlone) {
  const auto isAmber = [](const Tile& tile) { return firstAmber(tile) < tile.size.width; };
  EXPECT_TRUE(isAmber(square("↓12K ↑3K", 44)));
  EXPECT_FALSE(isAmber(square("↓12K", 44)));
}

TEST(SquareTile, IsLegibleOnEitherGround) {
  // Relative luminance and contrast as in the Web Content Accessibility Guidelines.
  const auto luminance = [](const std::uint8_t* argb) {
    const auto linear = [](std::uint8_t value) {
      const double share = value / 255.0;
      return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(argb[1]) + 0.7152 * linear(argb[2]) + 0.0722 * linear(argb[3]);
  };
  for (const TileGround ground : {TileGround::dark, TileGround::light}) {
    std::vector<std::uint8_t> argb(std::size_t{44} * 44 * 4);
    TextTile::drawSquare("↓888M ↑888M", 44, argb, ground);
    const double groundLuminance = luminance(&argb[std::size_t{22} * 4]);
    EXPECT_EQ(groundLuminance > 0.5, ground == TileGround::light);
    for (const int top : {0, 22}) {
      double best = 0;
      for (int pixel = top * 44; pixel < (top + 22) * 44; ++pixel) {
        const double ink = luminance(&argb[static_cast<std::size_t>(pixel) * 4]);
        best = std::max(best, (std::max(ink, groundLuminance) + 0.05) /
                                  (std::min(ink, groundLuminance) + 0.05));
      }
      EXPECT_GT(best, 6.5) << "row " << top;
    }
  }
}

TEST(SquareTile, ShowsDifferentTextsDifferently) {
  const auto inkOf = [](const std::string& label) { return square(label, 44).ink(); };
  EXPECT_NE(inkOf("↓0K ↑0K"), inkOf("↓1K ↑0K"));
  EXPECT_NE(inkOf("↓12K"), inkOf("↓12K ↑3K"));
}

TEST(WideTile, HasOneSizeAndItsArrowsInOnePlace) {
  const int left = firstInk(wide(labelGuide));
  const int right = firstAmber(wide(labelGuide));
  ASSERT_LT(right, TextTile::wideSize(labelGuide).width);
  for (const char* label : {"↓0K ↑0K", "↓12K ↑3K", "↓1.2M ↑456K", "↓99.9M ↑1000K", "↓-- ↑--"}) {
    const Tile tile = wide(label);
    EXPECT_EQ(tile.size, TextTile::wideSize(labelGuide));
    EXPECT_EQ(firstInk(tile), left) << label;
    EXPECT_EQ(firstAmber(tile), right) << label;
  }
}

TEST(WideTile, HasRoomForTheWidestText) {
  const Tile tile = wide(labelGuide);
  EXPECT_EQ(tile.size.height, 44);
  EXPECT_EQ(tile.inkOfColumn(tile.size.width - 1), 0);
  EXPECT_EQ(tile.inkOfColumn(tile.size.width - 3), 0);
}

TEST(Tiles, SurviveAbsurdTexts) {
  const std::vector<std::string> absurd{"",
                                        std::string(200, '9'),
                                        "↓" + std::string(300, 'M') + " ↑1K",
                                        "\xFF\xFE\x80",
                                        "↓9223372036855M ↑-0M",
                                        "   ",
                                        "↓ ↑",
                                        "a b c d e f"};
  for (const std::string& label : absurd) {
    EXPECT_TRUE(square(label, 22).isOpaqueInside() || !label.empty());
    EXPECT_EQ(wide(label).size, TextTile::wideSize(labelGuide));
    static_cast<void>(square(label, 44).ink());
  }
}

TEST(TileWords, AreAnArrowAndARateEach) {
  const auto words = tileWords("↓1.2M ↑-- x");
  ASSERT_GE(words.size(), 2U);
  EXPECT_FALSE(words[0].isUpload());
  EXPECT_TRUE(words[1].isUpload());
  EXPECT_EQ(words[0].glyphs, (std::vector<Glyph>{Glyph::down, static_cast<Glyph>(1), Glyph::dot,
                                                 static_cast<Glyph>(2), Glyph::mega}));
  EXPECT_EQ(words[1].glyphs, (std::vector<Glyph>{Glyph::up, Glyph::hyphen, Glyph::hyphen}));
}

} // namespace
} // namespace tidewell::test
