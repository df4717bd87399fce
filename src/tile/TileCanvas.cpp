#include "tile/TileCanvas.h"

#include <algorithm>
#include <cmath>

namespace tidewell {

namespace {

// How much of a pixel, from 0 to 1, lies inside a rounded corner: `x` and `y` are the distances of
// the pixel from the nearest two edges.
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

} // namespace

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

} // namespace tidewell
