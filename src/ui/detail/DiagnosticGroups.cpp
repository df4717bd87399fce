#include "ui/detail/DiagnosticGroups.h"

#include "base/Translation.h"
#include "connectivity/ConnectionInfo.h"
#include "ui/components/ConnectionText.h"
#include "ui/components/ShownText.h"
#include "ui/components/TextLine.h"
#include "ui/components/ValueRow.h"
#include "ui/detail/DetailStyles.h"
#include "ui/tokens/TWColor.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace tidewell {
namespace {

constexpr PerformanceGroup::Thresholds latencyMs{50.0, 100.0};
constexpr PerformanceGroup::Thresholds jitterMs{5.0, 20.0};
constexpr PerformanceGroup::Thresholds lossPercent{1.0, 5.0};

QString verdictOf(const QColor& color) {
  if (color == TWColor::green) {
    return translatedText("good");
  }
  return color == TWColor::yellow ? translatedText("fair") : translatedText("poor");
}

// Keeps the same distance from title to rows with and without a button.
constexpr int titleHeight = 28;

} // namespace

ConnectionGroup::ConnectionGroup(QWidget* parent)
    : DiagnosticGroup(translatedText("Connection"), parent),
      m_status(diagnosticRow(translated("Status"))),
      m_details{
          diagnosticRow(translated("Interface")),  diagnosticRow(translated("Network")),
          diagnosticRow(translated("Local IP")),   diagnosticRow(translated("Public IP")),
          diagnosticRow(translated("DNS Server")), diagnosticRow(translated("Interface Type"))} {}

void ConnectionGroup::setConnected(bool isConnected) {
  m_status->setValue(isConnected ? translatedText("Connected") : translatedText("Disconnected"),
                     isConnected ? TWColor::green : TWColor::red);
}

void ConnectionGroup::setInfo(const ConnectionInfo& info) {
  m_details[0]->setValue(interfaceNameText(info), TWColor::text);
  m_details[1]->setValue(networkNameText(info), TWColor::text);
  m_details[2]->setValue(shownText(info.ipAddress), TWColor::text);
  m_details[3]->setValue(shownText(info.publicIP), TWColor::text);
  m_details[4]->setValue(shownText(info.dns), TWColor::text);
  m_details[5]->setValue(interfaceTypeText(info.interfaceType), TWColor::text);
}

PerformanceGroup::PerformanceGroup(QWidget* parent)
    : DiagnosticGroup(translatedText("Performance"), parent),
      m_latency(diagnosticRow(translated("Latency"))),
      m_jitter(diagnosticRow(translated("Jitter"))),
      m_loss(diagnosticRow(translated("Packet Loss"))) {}

void PerformanceGroup::setLatency(double milliseconds) {
  show(*m_latency, figureText(milliseconds, 1) + QStringLiteral(" ms"), milliseconds, latencyMs);
}

void PerformanceGroup::setJitter(double milliseconds) {
  show(*m_jitter, figureText(milliseconds, 1) + QStringLiteral(" ms"), milliseconds, jitterMs);
}

void PerformanceGroup::setPacketLoss(double percent) {
  show(*m_loss, figureText(percent, 1) + u'%', percent, lossPercent);
}

void PerformanceGroup::show(ValueRow& row, const QString& text, double value,
                            Thresholds thresholds) {
  const QColor& color = colorOf(value, thresholds);
  row.setValue(text, color, verdictOf(color));
}

const QColor& PerformanceGroup::colorOf(double value, Thresholds thresholds) {
  if (value < thresholds.yellow) {
    return TWColor::green;
  }
  return value < thresholds.red ? TWColor::yellow : TWColor::red;
}

DiagnosticGroup::DiagnosticGroup(const QString& title, QWidget* parent)
    : SpokenGroup(QAccessible::Grouping, title, parent), m_column(new QVBoxLayout(this)),
      m_titleRow(new QHBoxLayout) {
  m_column->setContentsMargins(0, 0, 0, 0);
  m_column->setSpacing(0);
  m_titleRow->addStrut(titleHeight);
  m_titleRow->addWidget(makeSubheading(title, this), 1);
  m_column->addLayout(m_titleRow);
}

ValueRow* DiagnosticGroup::diagnosticRow(const char* label) {
  auto* const row =
      new ValueRow(QString::fromUtf8(label), {.padding = 8, .lineThickness = 1}, this);
  add(row);
  return row;
}

void DiagnosticGroup::add(QWidget* widget) { m_column->addWidget(widget); }

void DiagnosticGroup::addBesideTitle(QWidget* widget) { m_titleRow->addWidget(widget); }

} // namespace tidewell
