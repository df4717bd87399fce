#include "ui/panel/ResultLine.h"

#include "ui/components/FittedText.h"
#include "ui/components/ShownText.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QDateTime>
#include <QFontMetrics>
#include <QLocale>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tidewell {

namespace {

constexpr int sidePadding = 20;
constexpr int edgePadding = 8;
constexpr int rowSpacing = 2;
constexpr int leastGap = 12;
constexpr double groundOpacity = 0.5;
// What a QDateTime can hold for sure: 100 million days around 1970.
constexpr double furthestSeconds = 8.64e12;

QString titleText() { return QStringLiteral("Speed Test Result"); }

TextStyle titleStyle() { return {TWFont::label(), TWColor::accent()}; }

TextStyle figuresStyle() {
  static const QFont font = TWFont::monospaced(12, QFont::Medium);
  TextStyle style{font, TWColor::text()};
  style.smallestPixelSize = 10;
  return style;
}

TextStyle timeStyle() {
  static const QFont font = TWFont::standard(10, QFont::Normal);
  TextStyle style{font, TWColor::textTertiary()};
  style.alignment = Qt::AlignRight;
  style.isTabular = true;
  return style;
}

} // namespace

ResultLine::ResultLine(QWidget* parent) : PaintedWidget(QAccessible::StaticText, parent) {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QString ResultLine::timeOfDay(double secondsSince1970) {
  if (!(std::abs(secondsSince1970) <= furthestSeconds)) {
    return {};
  }
  const auto milliseconds = static_cast<qint64>(secondsSince1970 * 1000.0);
  const QTime time = QDateTime::fromMSecsSinceEpoch(milliseconds).time();
  return QLocale().toString(time, QLocale::ShortFormat);
}

void ResultLine::setResult(const SpeedTestResult& result) {
  const QString download = figureText(result.downloadMbps, 0);
  const QString upload = figureText(result.uploadMbps, 0);
  m_figures = QStringLiteral("\u2193%1 Mbps  \u2191%2 Mbps").arg(download, upload);
  m_timeOfDay = timeOfDay(result.timestamp);
  setSpoken(QStringLiteral("Speed Test Result: download %1 Mbps, upload %2 Mbps, %3")
                .arg(download, upload, m_timeOfDay));
  updateToolTip();
  update();
}

QSize ResultLine::sizeHint() const {
  const int rows = lineHeight(titleStyle()) + rowSpacing + lineHeight(figuresStyle());
  return {0, rows + 2 * edgePadding};
}

QRect ResultLine::figuresBox() const {
  const int time = static_cast<int>(std::ceil(lineWidth(m_timeOfDay, timeStyle())));
  const int top = edgePadding + lineHeight(titleStyle()) + rowSpacing;
  return {sidePadding, top, std::max(0, width() - 2 * sidePadding - leastGap - time),
          lineHeight(figuresStyle())};
}

void ResultLine::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), withOpacity(TWColor::accentDim(), groundOpacity));
  const QRect inside = rect().adjusted(sidePadding, edgePadding, -sidePadding, -edgePadding);
  drawLine(painter, inside, titleText(), titleStyle());
  drawLine(painter, figuresBox(), m_figures, figuresStyle());
  const int top = (height() - lineHeight(timeStyle())) / 2;
  drawLine(painter, QRect(inside.left(), top, inside.width(), inside.height()), m_timeOfDay,
           timeStyle());
}

void ResultLine::resizeEvent(QResizeEvent* /*event*/) { updateToolTip(); }

void ResultLine::updateToolTip() {
  const bool isCut = FittedText(m_figures, figuresStyle(), figuresBox().width()).isCut;
  setToolTip(isCut ? toolTipText(m_figures) : QString());
}

} // namespace tidewell
