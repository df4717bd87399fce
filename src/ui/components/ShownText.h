#pragma once

#include <QString>

#include <string_view>

namespace tidewell {

/// The bytes as text for a label: what could break a line or turn the writing direction, and what
/// is no UTF-8, is replaced by U+FFFD.
[[nodiscard]] QString shownText(std::string_view bytes);

/// The text as a tool tip that shows it as it is, also when it looks like markup.
[[nodiscard]] QString toolTipText(const QString& text);

/// A value as it is read aloud: the text "--" is an unknown value.
[[nodiscard]] QString spokenValue(const QString& value);

/// A figure as text with so many decimals; "--" for one that is no finite number.
[[nodiscard]] QString figureText(double value, int decimals);

} // namespace tidewell
