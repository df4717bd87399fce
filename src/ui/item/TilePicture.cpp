#include "ui/item/TilePicture.h"

#include "tile/LabelGuide.h"
#include "tile/TextTile.h"

#include <QImage>
#include <QtEndian>

#include <cstdint>
#include <span>
#include <vector>

namespace tidewell {

namespace {

template <class Draw> QPixmap picture(TileSize size, const Draw& draw) {
  std::vector<std::uint8_t> argb(size.bytes());
  draw(std::span(argb));
  QImage image(size.width, size.height, QImage::Format_ARGB32);
  for (int y = 0; y < size.height; ++y) {
    const std::size_t row = static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width) * 4;
    qFromBigEndian<quint32>(&argb[row], size.width, image.scanLine(y));
  }
  return QPixmap::fromImage(image);
}

} // namespace

QPixmap squarePicture(const std::string& text, int edge) {
  return picture({edge, edge}, [&](auto argb) { TextTile::drawSquare(text, edge, argb); });
}

QPixmap widePicture(const std::string& text) {
  return picture(TextTile::wideSize(labelGuide),
                 [&](auto argb) { TextTile::drawWide(text, labelGuide, argb); });
}

} // namespace tidewell
