#include "ui/components/ShownText.h"

#include "base/DisplayText.h"
#include "base/NumberText.h"

#include <QTextDocument>

#include <cmath>

namespace tidewell {

namespace {

QString unknownText() { return QStringLiteral("--"); }

} // namespace

QString shownText(std::string_view bytes) { return QString::fromStdString(displayText(bytes)); }

QString toolTipText(const QString& text) {
  return Qt::mightBeRichText(text) ? QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped()) : text;
}

QString spokenValue(const QString& value) {
  return value == unknownText() ? QStringLiteral("unknown") : value;
}

QString figureText(double value, int decimals) {
  return std::isfinite(value) ? QString::fromStdString(fixedText(value, decimals)) : unknownText();
}

} // namespace tidewell
