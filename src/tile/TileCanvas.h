#pragma once

#include "tile/GlyphSet.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace tidewell {

/// A colour without transparency.
struct Colour {
  std::uint8_t red;
  std::uint8_t green;
  std::uint8_t blue;
};

/// A picture in four bytes a pixel (alpha, red, green, blue; colours not multiplied by alpha), as
/// status item hosts take it. Drawing outside of it does nothing.
class TileCanvas {
public:
  /// `argb` holds `width` times `height` pixels and is borrowed.
  TileCanvas(std::span<std::uint8_t> argb, int width, int height)
      : m_argb(argb), m_width(width), m_height(height) {}

  /// Replaces everything by an opaque rectangle with smooth round corners.
  void fillRounded(Colour colour, double radius);

  /// Lays the coverage image of one glyph, its upper left corner at `x`, `y`, in a colour over
  /// what is there.
  void stamp(const GlyphSet& set, Glyph glyph, int x, int y, Colour colour);

  [[nodiscard]] int width() const { return m_width; }
  [[nodiscard]] int height() const { return m_height; }

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

} // namespace tidewell
