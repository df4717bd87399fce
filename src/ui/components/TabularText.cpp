#include "ui/components/TabularText.h"

#include <QFontMetricsF>

#include <algorithm>

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

// Calls `piece(text, x, advance)` for each digit and for each run of other characters; returns the
// width of all.
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

} // namespace

double TabularText::width(const QFont& font, const QString& text) {
  return lay(QFontMetricsF(font), text, [](const QString&, double) {});
}

void TabularText::draw(QPainter& painter, QPointF baseline, const QString& text) {
  lay(QFontMetricsF(painter.font()), text,
      [&](const QString& piece, double x) { painter.drawText(baseline + QPointF(x, 0.0), piece); });
}

} // namespace tidewell
