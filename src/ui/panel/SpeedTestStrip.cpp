#include "ui/panel/SpeedTestStrip.h"

#include "ui/components/FittedText.h"
#include "ui/components/ShownText.h"
#include "ui/components/Spinner.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QDateTime>
#include <QFontMetrics>
#include <QLocale>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace tidewell {

namespace {

constexpr int spacing = 8;

QString runningText() { return QStringLiteral("Running speed test..."); }

TextStyle textStyle() {
  static const QFont font = TWFont::standard(12, QFont::Normal);
  return {font, TWColor::textSecondary()};
}

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

RunningLine::RunningLine(const ViewTime& time, QWidget* parent)
    : PaintedWidget(QAccessible::StaticText, parent), m_spinner(new Spinner(time.now, this)) {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  setSpoken(runningText());
}

QSize RunningLine::sizeHint() const {
  return {0, std::max(m_spinner->height(), lineHeight(textStyle())) + 2 * edgePadding};
}

QRect RunningLine::content() const {
  const int textWidth = static_cast<int>(std::ceil(lineWidth(runningText(), textStyle())));
  const int contentWidth = m_spinner->width() + spacing + textWidth;
  return {(width() - contentWidth) / 2, edgePadding, contentWidth, height() - 2 * edgePadding};
}

void RunningLine::resizeEvent(QResizeEvent* /*event*/) {
  m_spinner->move(content().left(), (height() - m_spinner->height()) / 2);
}

void RunningLine::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), TWColor::accentDim());
  const int top = (height() - lineHeight(textStyle())) / 2;
  const QRect box = content().adjusted(m_spinner->width() + spacing, 0, 0, 0);
  drawLine(painter, QRect(box.left(), top, box.width(), box.height()), runningText(), textStyle());
}

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

SpeedTestStrip::SpeedTestStrip(const ViewTime& time, QWidget* parent)
    : QWidget(parent), m_running(new RunningLine(time, this)), m_result(new ResultLine(this)) {
  setAccessibleName(QStringLiteral("Speed test"));
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(m_running);
  column->addWidget(m_result);
  setState(false, std::nullopt);
}

void SpeedTestStrip::setState(bool isRunning, const std::optional<SpeedTestResult>& result) {
  if (result) {
    m_result->setResult(*result);
  }
  m_running->setVisible(isRunning);
  m_result->setVisible(!isRunning && result.has_value());
  setVisible(isRunning || result.has_value());
}

} // namespace tidewell
