#include "ui/components/ShownText.h"

#include "base/DisplayText.h"
#include "base/NumberText.h"
#include "base/Translation.h"
#include "format/SpeedFormatter.h"

#include <QDateTime>
#include <QLocale>

#include <cmath>

namespace tidewell {
namespace {

// QDateTime is sure to hold 100 million days around 1970.
constexpr double furthestSeconds = 8.64e12;

QString unknownText() { return QStringLiteral("--"); }

} // namespace

QString shownText(std::string_view bytes) { return QString::fromStdString(displayText(bytes)); }

QString translatedText(const char* english) { return QString::fromUtf8(translated(english)); }

QString spokenValue(const QString& value) {
  return value == unknownText() ? translatedText("unknown") : value;
}

QString figureText(double value, int decimals) {
  return std::isfinite(value) ? QString::fromStdString(fixedText(value, decimals)) : unknownText();
}

QString rateText(std::int64_t bytesPerSec) {
  return QString::fromStdString(SpeedFormatter::format(bytesPerSec));
}

QString timeOfDay(double secondsSince1970) {
  if (!(std::abs(secondsSince1970) <= furthestSeconds)) {
    return {};
  }
  const auto milliseconds = static_cast<qint64>(secondsSince1970 * 1000.0);
  const QTime time = QDateTime::fromMSecsSinceEpoch(milliseconds).time();
  return QLocale().toString(time, QLocale::ShortFormat);
}

QString timeText(double secondsSince1970) {
  const QString time = timeOfDay(secondsSince1970);
  return time.isEmpty() ? unknownText() : time;
}

} // namespace tidewell
