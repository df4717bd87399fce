#include "ui/processes/ProcessTexts.h"

#include "ui/components/ShownText.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <cmath>

namespace tidewell {

QString initialOf(const QString& name) {
  // A visible character may consist of several code points.
  QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, name);
  const qsizetype end = characters.toNextBoundary();
  return end > 0 ? name.left(end).toUpper() : QString();
}

QString identifierText(const ProcessUsage& usage) {
  return QStringLiteral("PID ") + QString::fromStdString(std::to_string(usage.id));
}

std::array<QString, 3> figuresOf(const ProcessUsage& usage) {
  return {QString::fromStdString(ProcessUsage::formatBytes(usage.downloadBytesPerSec)),
          QString::fromStdString(ProcessUsage::formatBytes(usage.uploadBytesPerSec)),
          QString::fromStdString(ProcessUsage::formatBytesTotal(usage.totalBytes))};
}

double shareOf(const ProcessUsage& usage) {
  return std::isnan(usage.usagePercent) ? 0.0 : std::clamp(usage.usagePercent, 0.0, 1.0);
}

QString spokenUsage(const ProcessUsage& usage) {
  const auto [download, upload, total] = figuresOf(usage);
  const QString name = usage.name.empty() ? translatedText("unnamed") : shownText(usage.name);
  return translatedText("%1, %2, download %3, upload %4, total %5, usage %6 %")
      .arg(name, identifierText(usage), download, upload, total,
           figureText(shareOf(usage) * 100.0, 0));
}

} // namespace tidewell
