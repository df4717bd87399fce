#pragma once

#include <QFont>
#include <QStringList>

namespace tidewell {

/// The type styles: fixed sizes in device-independent pixels, each made at its first use. Needs the
/// application object. Main thread.
///
/// Inter and JetBrains Mono where they are installed, else the system's sans-serif and monospaced
/// faces.
struct TWFont {
  /// Figures, in the monospaced design.
  [[nodiscard]] static const QFont& statValue();
  [[nodiscard]] static const QFont& monoSmall();
  [[nodiscard]] static const QFont& monoTiny();
  /// Words, in the default design.
  [[nodiscard]] static const QFont& label();
  [[nodiscard]] static const QFont& body();
  [[nodiscard]] static const QFont& caption();
  [[nodiscard]] static const QFont& sectionTitle();

  /// A style of the default design beyond the named ones.
  [[nodiscard]] static QFont standard(int pixelSize, QFont::Weight weight);
  /// A style of the monospaced design beyond the named ones.
  [[nodiscard]] static QFont monospaced(int pixelSize, QFont::Weight weight);

  /// The families to ask for: the wanted one if it is among those installed, else the system's.
  [[nodiscard]] static QStringList families(const QString& wanted, const QStringList& installed,
                                            const QStringList& systemFamilies);
};

/// The style with letters set apart by so many pixels.
[[nodiscard]] QFont withLetterSpacing(QFont font, double pixels);

} // namespace tidewell
