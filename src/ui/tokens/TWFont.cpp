#include "ui/tokens/TWFont.h"

#include <QFontDatabase>

#include <map>
#include <utility>

namespace tidewell {
namespace {

using Size = std::pair<int, QFont::Weight>;

QFont makeFont(const QStringList& families, QFont::StyleHint hint, Size size) {
  QFont font;
  font.setFamilies(families);
  font.setStyleHint(hint);
  font.setPixelSize(size.first);
  font.setWeight(size.second);
  return font;
}

QFont makeStandard(Size size) {
  static const QStringList families =
      TWFont::families(QStringLiteral("Inter"), QFontDatabase::families(),
                       QFontDatabase::systemFont(QFontDatabase::GeneralFont).families());
  return makeFont(families, QFont::SansSerif, size);
}

QFont makeMonospaced(Size size) {
  static const QStringList families =
      TWFont::families(QStringLiteral("JetBrains Mono"), QFontDatabase::families(),
                       QFontDatabase::systemFont(QFontDatabase::FixedFont).families());
  QFont font = makeFont(families, QFont::Monospace, size);
  font.setFixedPitch(true);
  // Programming fonts join "--" and "::" into ligatures. Scripts that need shaping still get it.
  font.setStyleStrategy(QFont::PreferNoShaping);
  return font;
}

// Looks the font up, or makes it at its first use.
const QFont& cached(std::map<Size, QFont>& fonts, Size size, QFont (*make)(Size)) {
  const auto found = fonts.find(size);
  return (found != fonts.end() ? found : fonts.emplace(size, make(size)).first)->second;
}

} // namespace

const QFont& TWFont::standard(int pixelSize, QFont::Weight weight) {
  static std::map<Size, QFont> fonts;
  return cached(fonts, {pixelSize, weight}, makeStandard);
}

const QFont& TWFont::monospaced(int pixelSize, QFont::Weight weight) {
  static std::map<Size, QFont> fonts;
  return cached(fonts, {pixelSize, weight}, makeMonospaced);
}

QStringList TWFont::families(const QString& wanted, const QStringList& installed,
                             const QStringList& systemFamilies) {
  return installed.contains(wanted) ? QStringList{wanted} : systemFamilies;
}

QFont withLetterSpacing(QFont font, double pixels) {
  font.setLetterSpacing(QFont::AbsoluteSpacing, pixels);
  return font;
}

} // namespace tidewell
