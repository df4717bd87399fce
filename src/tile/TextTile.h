#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace tidewell {

/// A label as long as the longest: no label up to 10 GB/s is longer.
inline constexpr const char* labelGuide = "↓10000M ↑10000M";

/// The same when the user hides the upload rate.
inline constexpr const char* labelGuideWithoutUpload = "↓10000M";

/// The size of a tile in pixels.
struct TileSize {
  int width;
  int height;

  /// The size of its picture: four bytes a pixel.
  [[nodiscard]] std::size_t bytes() const {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
  }
  friend bool operator==(const TileSize&, const TileSize&) = default;
};

/// The ground of a square tile.
enum class TileGround { dark, light };

/// The panel's text as a picture, for hosts that show no label: on an opaque tile, so that it is
/// legible on any panel. Alpha, red, green, blue, not premultiplied. Pure.
namespace TextTile {

/// Draws one rate above the other in a square; a single rate is larger. There is no room for
/// arrows: download is above and blue, upload below and amber. `edge` is 22 or 44, `argb` holds the
/// bytes of such a tile.
void drawSquare(std::string_view label, int edge, std::span<std::uint8_t> argb,
                TileGround ground = TileGround::dark);

/// The size of the wide tile, which has room for `guide`. Independent of the label.
[[nodiscard]] TileSize wideSize(std::string_view guide);

/// Draws the whole text in one line on a dark ground. Each word begins where the guide has its own,
/// so the arrows do not move when the rates change. `argb` holds the bytes of a tile of
/// `wideSize(guide)`.
void drawWide(std::string_view label, std::string_view guide, std::span<std::uint8_t> argb);

} // namespace TextTile

} // namespace tidewell
