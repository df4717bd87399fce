#pragma once

#include <QString>

class QWidget;

namespace tidewell {

struct TextStyle;
class TextLine;

/// Distances that all tabs share, in pixels.
namespace detailGrid {
/// Around a tab's content.
inline constexpr int padding = 24;
/// Between sections.
inline constexpr int sectionSpacing = 24;
/// Between a heading and what it heads.
inline constexpr int headingSpacing = 12;
} // namespace detailGrid

/// The title of a tab or of one of its sections, which assistive technology meets as a heading.
[[nodiscard]] TextLine* makeHeading(const QString& text, QWidget* parent);

/// The title of a part of a section.
[[nodiscard]] TextLine* makeSubheading(const QString& text, QWidget* parent);

/// A quiet line where there is nothing else to show.
[[nodiscard]] TextLine* makeHint(const QString& text, QWidget* parent);

} // namespace tidewell
