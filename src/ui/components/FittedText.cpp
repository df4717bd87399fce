#include "ui/components/FittedText.h"

#include "ui/components/Painting.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace tidewell {
namespace {

bool isDigit(QChar character) { return character >= u'0' && character <= u'9'; }

double digitWidth(const QFontMetricsF& metrics) {
  double widest = 0.0;
  for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
    widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
  }
  return widest;
}

// Calls `piece(text, x)` for each digit and each run of other characters. Returns the total width.
template <class F> double lay(const QFontMetricsF& metrics, const QString& text, F&& piece) {
  const double cell = digitWidth(metrics);
  double x = 0.0;
  for (qsizetype begin = 0; begin < text.size();) {
    qsizetype end = begin + 1;
    if (isDigit(text[begin])) {
      const QString digit = text.mid(begin, 1);
      piece(digit, x + (cell - metrics.horizontalAdvance(digit)) / 2.0);
      x += cell;
    } else {
      while (end < text.size() && !isDigit(text[end])) {
        ++end;
      }
      const QString run = text.mid(begin, end - begin);
      piece(run, x);
      x += metrics.horizontalAdvance(run);
    }
    begin = end;
  }
  return x;
}

// Rounding may add a fraction of a pixel to a text's width. That is no reason for an ellipsis.
constexpr double tolerance = 0.5;

double widthIn(const QFont& font, const QString& text, bool isTabular) {
  const double width =
      isTabular ? TabularText::width(font, text) : QFontMetricsF(font).horizontalAdvance(text);
  return text.isEmpty() ? 0.0 : width - font.letterSpacing();
}

double startOf(const QRectF& box, double width, Qt::Alignment alignment) {
  if (alignment.testFlag(Qt::AlignRight)) {
    return box.right() - width;
  }
  return alignment.testFlag(Qt::AlignHCenter) ? box.center().x() - width / 2.0 : box.left();
}

} // namespace

double TabularText::width(const QFont& font, const QString& text) {
  return lay(QFontMetricsF(font), text, [](const QString&, double) {});
}

void TabularText::draw(QPainter& painter, QPointF baseline, const QString& text) {
  lay(QFontMetricsF(painter.font()), text,
      [&](const QString& piece, double x) { painter.drawText(baseline + QPointF(x, 0.0), piece); });
}

FittedText::FittedText(const QString& wanted, const TextStyle& style, double room)
    : font(style.font), text(wanted), width(widthIn(font, text, style.isTabular)) {
  const double available = room + tolerance;
  if (text.isEmpty() || width <= available) {
    return;
  }
  const int largest = font.pixelSize() - 1;
  const int smallest = style.smallestPixelSize;
  if (smallest > 0 && smallest <= largest) {
    const auto fits = [&](int size) {
      font.setPixelSize(size);
      width = widthIn(font, text, style.isTabular);
      return width <= available;
    };
    // Each size costs a look-up of the font, so the search begins where the proportion points.
    int size = std::clamp(static_cast<int>(font.pixelSize() * std::max(available, 0.0) / width),
                          smallest, largest);
    while (size < largest && fits(size + 1)) {
      ++size;
    }
    while (size > smallest && !fits(size)) {
      --size;
    }
    if (fits(size)) {
      return;
    }
  }
  text = QFontMetricsF(font).elidedText(wanted, style.elide, std::max(room, 0.0));
  width = widthIn(font, text, style.isTabular);
  isCut = text != wanted;
}

QString ifCut(const QString& text, const TextStyle& style, double room) {
  return FittedText(text, style, room).isCut ? text : QString();
}

double lineWidth(const QString& text, const TextStyle& style) {
  return widthIn(style.font, text, style.isTabular);
}

int lineHeight(const TextStyle& style) { return QFontMetrics(style.font).height(); }

bool drawLine(QPainter& painter, const QRectF& box, const QString& text, const TextStyle& style) {
  const FittedText fitted(text, style, box.width());
  // On device pixels, so that equal text looks the same everywhere.
  const QPointF baseline(DevicePixels(painter).x(startOf(box, fitted.width, style.alignment)),
                         box.top() + QFontMetrics(style.font).ascent());
  painter.setFont(fitted.font);
  painter.setPen(style.color);
  if (style.isTabular && !fitted.isCut) {
    TabularText::draw(painter, baseline, fitted.text);
  } else {
    painter.setLayoutDirection(fitted.text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    painter.drawText(baseline, fitted.text);
  }
  return fitted.isCut;
}

} // namespace tidewell
