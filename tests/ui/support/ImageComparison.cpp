#include "ImageComparison.h"

#include <QDir>

#include <algorithm>
#include <cstdlib>

namespace tidewell::test {

namespace {

bool isAlike(QRgb left, QRgb right) {
  const int farthest =
      std::max({std::abs(qRed(left) - qRed(right)), std::abs(qGreen(left) - qGreen(right)),
                std::abs(qBlue(left) - qBlue(right)), std::abs(qAlpha(left) - qAlpha(right))});
  return farthest <= channelTolerance;
}

QImage plain(const QImage& image) {
  QImage converted = image.convertToFormat(QImage::Format_ARGB32);
  converted.setDevicePixelRatio(1.0);
  return converted;
}

QString keep(const QString& name, const QString& kind, const QImage& image) {
  const QDir directory(QStringLiteral(TIDEWELL_UNEQUAL));
  directory.mkpath(QStringLiteral("."));
  const QString path = directory.filePath(name + u'.' + kind + QStringLiteral(".png"));
  image.save(path);
  return path;
}

} // namespace

ImageDifference difference(const QImage& expected, const QImage& actual) {
  const QImage left = plain(expected);
  const QImage right = plain(actual);
  ImageDifference result;
  result.picture = QImage(right.size(), QImage::Format_RGB32);
  result.picture.fill(Qt::white);
  if (left.size() != right.size()) {
    result.pixels = static_cast<qsizetype>(right.width()) * right.height();
    return result;
  }
  if (left == right) {
    result.picture.fill(Qt::black);
    return result;
  }
  for (int y = 0; y < right.height(); ++y) {
    for (int x = 0; x < right.width(); ++x) {
      if (isAlike(left.pixel(x, y), right.pixel(x, y))) {
        result.picture.setPixel(x, y, qRgb(0, 0, 0));
      } else {
        ++result.pixels;
      }
    }
  }
  return result;
}

int pixelsWhere(const QImage& image, const QRect& box,
                const std::function<bool(const QColor&)>& isThere) {
  int count = 0;
  for (int y = box.top(); y <= box.bottom(); ++y) {
    for (int x = box.left(); x <= box.right(); ++x) {
      count += isThere(image.pixelColor(x, y)) ? 1 : 0;
    }
  }
  return count;
}

QImage picture(QWidget& widget, double scale) {
  QImage image(widget.size() * scale, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::transparent);
  widget.render(&image, {}, {}, QWidget::DrawChildren);
  return image;
}

QString faultOf(const QString& name, const QImage& actual) {
  const QString stored = QStringLiteral(TIDEWELL_GOLDEN "/") + name + QStringLiteral(".png");
  if (qEnvironmentVariableIsSet("TIDEWELL_UPDATE_GOLDEN")) {
    return plain(actual).save(stored, nullptr, 0) ? QString() : stored + " cannot be written";
  }
  const QImage expected(stored);
  if (expected.isNull()) {
    return stored + " is missing; the picture is " + keep(name, QStringLiteral("actual"), actual);
  }
  const ImageDifference found = difference(expected, actual);
  if (found.pixels == 0) {
    return {};
  }
  return QString::number(found.pixels) + " pixels differ from " + stored + "; see " +
         keep(name, QStringLiteral("actual"), actual) + " and " +
         keep(name, QStringLiteral("difference"), found.picture);
}

} // namespace tidewell::test
