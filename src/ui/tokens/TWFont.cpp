#include "ui/tokens/TWFont.h"

#include <QFontDatabase>

namespace tidewell {

namespace {

QStringList standardFamilies() {
  static const QStringList found =
      TWFont::families(QStringLiteral("Inter"), QFontDatabase::families(),
                       QFontDatabase::systemFont(QFontDatabase::GeneralFont).families());
  return found;
}

QStringList monospacedFamilies() {
  static const QStringList found =
      TWFont::families(QStringLiteral("JetBrains Mono"), QFontDatabase::families(),
                       QFontDatabase::systemFont(QFontDatabase::FixedFont).families());
  return found;
}

QFont made(const QStringList& families, QFont::StyleHint hint, int pixelSize,
           QFont::Weight weight) {
  QFont font;
  font.setFamilies(families);
  font.setStyleHint(hint);
  font.setPixelSize(pixelSize);
  font.setWeight(weight);
  return font;
}

} // namespace

QFont TWFont::standard(int pixelSize, QFont::Weight weight) {
  return made(standardFamilies(), QFont::SansSerif, pixelSize, weight);
}

QFont TWFont::monospaced(int pixelSize, QFont::Weight weight) {
  QFont font = made(monospacedFamilies(), QFont::Monospace, pixelSize, weight);
  font.setFixedPitch(true);
  // Fonts for programmers join "--" and "::" into one sign. Scripts that need shaping still get it.
  font.setStyleStrategy(QFont::PreferNoShaping);
  return font;
}

QStringList TWFont::families(const QString& wanted, const QStringList& installed,
                             const QStringList& systemFamilies) {
  return installed.contains(wanted) ? QStringList{wanted} : systemFamilies;
}

const QFont& TWFont::statValue() {
  static const QFont font = monospaced(18, QFont::DemiBold);
  return font;
}

const QFont& TWFont::monoSmall() {
  static const QFont font = monospaced(12, QFont::Normal);
  return font;
}

const QFont& TWFont::monoTiny() {
  static const QFont font = monospaced(11, QFont::Normal);
  return font;
}

const QFont& TWFont::label() {
  static const QFont font = standard(11, QFont::DemiBold);
  return font;
}

const QFont& TWFont::body() {
  static const QFont font = standard(13, QFont::Normal);
  return font;
}

const QFont& TWFont::caption() {
  static const QFont font = standard(11, QFont::Normal);
  return font;
}

const QFont& TWFont::sectionTitle() {
  static const QFont font = standard(15, QFont::DemiBold);
  return font;
}

QFont withLetterSpacing(QFont font, double pixels) {
  font.setLetterSpacing(QFont::AbsoluteSpacing, pixels);
  return font;
}

} // namespace tidewell
