#pragma once

#include <QFont>
#include <QStringList>

namespace tidewell {

/// The type styles: fixed sizes in device-independent pixels, each made at its first use. Needs the
/// application object.
///
/// Inter and JetBrains Mono if they are installed, otherwise the system's sans-serif and monospaced
/// fonts.
struct TWFont {
  /// Figures, monospaced.
  [[nodiscard]] static const QFont& statValue() { return monospaced(18, QFont::DemiBold); }
  [[nodiscard]] static const QFont& monoSmall() { return monospaced(12, QFont::Normal); }
  [[nodiscard]] static const QFont& monoTiny() { return monospaced(11, QFont::Normal); }
  /// Words.
  [[nodiscard]] static const QFont& label() { return standard(11, QFont::DemiBold); }
  [[nodiscard]] static const QFont& body() { return standard(13, QFont::Normal); }
  [[nodiscard]] static const QFont& caption() { return standard(11, QFont::Normal); }
  [[nodiscard]] static const QFont& sectionTitle() { return standard(15, QFont::DemiBold); }

  /// Styles beyond the named ones. The font lives as long as the program.
  [[nodiscard]] static const QFont& standard(int pixelSize, QFont::Weight weight);
  [[nodiscard]] static const QFont& monospaced(int pixelSize, QFont::Weight weight);

  /// The families to use: `wanted` if it is installed, otherwise the system's.
  [[nodiscard]] static QStringList families(const QString& wanted, const QStringList& installed,
                                            const QStringList& systemFamilies);
};

/// The font with this space between letters, in pixels.
[[nodiscard]] QFont withLetterSpacing(QFont font, double pixels);

} // namespace tidewell
