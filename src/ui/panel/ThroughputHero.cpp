#include "ui/panel/ThroughputHero.h"

#include "format/SpeedFormatter.h"
#include "ui/components/StatusBadge.h"
#include "ui/components/TextLine.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QVBoxLayout>

namespace tidewell {

namespace {

constexpr int topPadding = 24;
constexpr int bottomPadding = 16;
constexpr int sidePadding = 20;
constexpr int titleSpacing = 4;
constexpr int badgeSpacing = 10;

TextStyle centred(const QFont& font, const QColor& color) {
  TextStyle style{font, color};
  style.alignment = Qt::AlignHCenter;
  return style;
}

TextStyle titleStyle() {
  return centred(withLetterSpacing(TWFont::label(), 1.5), TWColor::textTertiary());
}

TextStyle rateStyle() {
  TextStyle style = centred(TWFont::monospaced(36, QFont::Bold), TWColor::text());
  style.smallestPixelSize = 20;
  return style;
}

TextStyle megabitsStyle() {
  TextStyle style = centred(TWFont::standard(13, QFont::Normal), TWColor::textSecondary());
  style.isTabular = true;
  return style;
}

} // namespace

ThroughputHero::ThroughputHero(const ViewTime& time, QWidget* parent)
    : QWidget(parent), m_title(new TextLine(titleStyle(), this)),
      m_rate(new TextLine(rateStyle(), this)), m_megabits(new TextLine(megabitsStyle(), this)),
      m_badge(new StatusBadge(time.now, this)) {
  setAccessibleName(QStringLiteral("Throughput"));
  m_title->setText(QStringLiteral("CURRENT THROUGHPUT"), QStringLiteral("Current throughput"));
  layOut();
}

void ThroughputHero::layOut() {
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(sidePadding, topPadding, sidePadding, bottomPadding);
  column->setSpacing(0);
  column->addWidget(m_title);
  column->addSpacing(titleSpacing);
  column->addWidget(m_rate);
  column->addWidget(m_megabits);
  column->addSpacing(badgeSpacing);
  column->addWidget(m_badge, 0, Qt::AlignHCenter);
}

void ThroughputHero::setDownload(std::int64_t bytesPerSec) {
  const QString rate = QString::fromStdString(SpeedFormatter::format(bytesPerSec));
  const QString megabits =
      QString::fromStdString(SpeedFormatter::formatMbps(bytesPerSec)) + QStringLiteral(" Mbps");
  m_rate->setText(rate, QStringLiteral("Download ") + rate);
  m_megabits->setText(megabits, QStringLiteral("Download ") + megabits);
}

void ThroughputHero::setStatus(NetworkStatus status) { m_badge->setStatus(status); }

} // namespace tidewell
