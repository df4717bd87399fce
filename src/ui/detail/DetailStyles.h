#pragma once

#include <QString>

class QWidget;

namespace tidewell {

struct TextStyle;
class TextLine;

/// Spacing shared by all tabs, in pixels.
namespace detailGrid {
/// Around a tab's content.
inline constexpr int padding = 24;
/// Between sections.
inline constexpr int sectionSpacing = 24;
/// Between a heading and its content.
inline constexpr int headingSpacing = 12;
} // namespace detailGrid

/// The title of a tab or section. A heading to assistive technology.
[[nodiscard]] TextLine* makeHeading(const QString& text, QWidget* parent);

/// The title within a section. A heading to assistive technology.
[[nodiscard]] TextLine* makeSubheading(const QString& text, QWidget* parent);

/// A line in place of missing content.
[[nodiscard]] TextLine* makeHint(const QString& text, QWidget* parent);

} // namespace tidewell
