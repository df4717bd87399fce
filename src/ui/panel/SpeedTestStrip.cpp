#include "ui/panel/SpeedTestStrip.h"

#include "base/Translation.h"
#include "ui/components/FittedText.h"
#include "ui/components/ShownText.h"
#include "ui/components/Spinner.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace tidewell {
namespace {

constexpr int spacing = 8;

QString runningText() { return translatedText("Running speed test..."); }

TextStyle textStyle() { return {TWFont::standard(12, QFont::Normal), TWColor::textSecondary}; }

constexpr int sidePadding = 20;
constexpr int edgePadding = 8;
constexpr int rowSpacing = 2;
constexpr int leastGap = 12;
constexpr double groundOpacity = 0.5;

QString titleText() { return translatedText("Speed Test Result"); }

TextStyle titleStyle() { return {TWFont::label(), TWColor::accent}; }

QString failedText() { return translatedText("Speed Test Failed"); }

TextStyle failedStyle() { return {TWFont::label(), TWColor::red}; }

TextStyle reasonStyle() { return {TWFont::caption(), TWColor::textSecondary}; }

// The reason as the beginning of a sentence.
QString asSentence(const std::string& reason) {
  const QString text = shownText(translatedReason(reason));
  return text.left(1).toUpper() + text.mid(1);
}

TextStyle figuresStyle() {
  return {.font = TWFont::monospaced(12, QFont::Medium),
          .color = TWColor::text,
          .smallestPixelSize = 10};
}

TextStyle timeStyle() {
  return {.font = TWFont::standard(10, QFont::Normal),
          .color = TWColor::textTertiary,
          .alignment = Qt::AlignRight,
          .isTabular = true};
}

} // namespace

RunningLine::RunningLine(const ViewTime& time, QWidget* parent)
    : PaintedWidget(QAccessible::StaticText, parent), m_spinner(new Spinner(time.now, this)) {
  setSpoken(runningText());
}

QSize RunningLine::sizeHint() const {
  return {0, std::max(m_spinner->height(), lineHeight(textStyle())) + 2 * edgePadding};
}

QRect RunningLine::content() const {
  const int textWidth = static_cast<int>(std::ceil(lineWidth(runningText(), textStyle())));
  const int contentWidth =
      std::min(m_spinner->width() + spacing + textWidth, width() - 2 * sidePadding);
  return {(width() - contentWidth) / 2, edgePadding, contentWidth, height() - 2 * edgePadding};
}

void RunningLine::resizeEvent(QResizeEvent* event) {
  PaintedWidget::resizeEvent(event);
  m_spinner->move(content().left(), (height() - m_spinner->height()) / 2);
}

void RunningLine::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), TWColor::accentDim);
  const int top = (height() - lineHeight(textStyle())) / 2;
  const QRect box = content().adjusted(m_spinner->width() + spacing, 0, 0, 0);
  drawLine(painter, QRect(box.left(), top, box.width(), box.height()), runningText(), textStyle());
}

QString RunningLine::cutText() const {
  return ifCut(runningText(), textStyle(), content().width() - m_spinner->width() - spacing);
}

ResultLine::ResultLine(QWidget* parent) : PaintedWidget(QAccessible::StaticText, parent) {}

void ResultLine::setResult(const SpeedTestResult& result) {
  const QString download = figureText(result.downloadMbps, 0);
  const QString upload = figureText(result.uploadMbps, 0);
  m_figures = QStringLiteral("\u2193%1 Mbps  \u2191%2 Mbps").arg(download, upload);
  m_time = timeOfDay(result.timestamp);
  setSpoken(translatedText("Speed Test Result: download %1 Mbps, upload %2 Mbps, %3")
                .arg(download, upload, m_time));
  contentChanged();
}

QSize ResultLine::sizeHint() const {
  const int rows = lineHeight(titleStyle()) + rowSpacing + lineHeight(figuresStyle());
  return {0, rows + 2 * edgePadding};
}

QRect ResultLine::figuresBox() const {
  const int time = static_cast<int>(std::ceil(lineWidth(m_time, timeStyle())));
  const int top = edgePadding + lineHeight(titleStyle()) + rowSpacing;
  return {sidePadding, top, std::max(0, width() - 2 * sidePadding - leastGap - time),
          lineHeight(figuresStyle())};
}

void ResultLine::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), withOpacity(TWColor::accentDim, groundOpacity));
  const QRect inside = rect().adjusted(sidePadding, edgePadding, -sidePadding, -edgePadding);
  drawLine(painter, inside, titleText(), titleStyle());
  drawLine(painter, figuresBox(), m_figures, figuresStyle());
  const int top = (height() - lineHeight(timeStyle())) / 2;
  drawLine(painter, QRect(inside.left(), top, inside.width(), inside.height()), m_time,
           timeStyle());
}

QString ResultLine::cutText() const {
  const bool isCut = !ifCut(titleText(), titleStyle(), width() - 2 * sidePadding).isEmpty() ||
                     !ifCut(m_figures, figuresStyle(), figuresBox().width()).isEmpty();
  return isCut ? accessibleName() : QString();
}

FailureLine::FailureLine(QWidget* parent) : PaintedWidget(QAccessible::StaticText, parent) {}

void FailureLine::setReason(const std::string& reason) {
  m_reason = asSentence(reason);
  setSpoken(translatedText("Speed Test Failed: %1").arg(m_reason));
  contentChanged();
}

QSize FailureLine::sizeHint() const {
  const int rows = lineHeight(failedStyle()) + rowSpacing + lineHeight(reasonStyle());
  return {0, rows + 2 * edgePadding};
}

void FailureLine::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), withOpacity(TWColor::redDim, groundOpacity));
  const QRect inside = rect().adjusted(sidePadding, edgePadding, -sidePadding, -edgePadding);
  drawLine(painter, inside, failedText(), failedStyle());
  const int top = lineHeight(failedStyle()) + rowSpacing;
  drawLine(painter, inside.adjusted(0, top, 0, 0), m_reason, reasonStyle());
}

QString FailureLine::cutText() const {
  const int space = width() - 2 * sidePadding;
  const bool isTitleCut = !ifCut(failedText(), failedStyle(), space).isEmpty();
  return isTitleCut && !m_reason.isEmpty() ? accessibleName()
                                           : ifCut(m_reason, reasonStyle(), space);
}

SpeedTestStrip::SpeedTestStrip(const ViewTime& time, QWidget* parent)
    : QWidget(parent), m_running(new RunningLine(time, this)), m_failure(new FailureLine(this)),
      m_result(new ResultLine(this)) {
  setAccessibleName(translatedText("Speed test"));
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(m_running);
  column->addWidget(m_failure);
  column->addWidget(m_result);
  setState(SpeedTestState());
}

void SpeedTestStrip::setState(const SpeedTestState& state) {
  const bool isRunning = state.isRunning.get();
  const bool hasFailed = !state.failure.get().empty();
  const auto& result = shownResult(state);
  m_failure->setReason(state.failure.get());
  if (result) {
    m_result->setResult(*result);
  }
  m_running->setVisible(isRunning);
  m_failure->setVisible(!isRunning && hasFailed);
  m_result->setVisible(!isRunning && result.has_value());
  setVisible(isRunning || hasFailed || result.has_value());
}

} // namespace tidewell
