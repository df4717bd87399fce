#pragma once

#include <QString>

#include <cstdint>
#include <string_view>

namespace tidewell {

/// The bytes as label text. Invalid UTF-8, line breaks and characters that change the writing
/// direction become U+FFFD.
[[nodiscard]] QString shownText(std::string_view bytes);

/// A text of the program in the user's language.
[[nodiscard]] QString translatedText(const char* english);

/// A value as it is read aloud: "--" is read as "unknown".
[[nodiscard]] QString spokenValue(const QString& value);

/// A number with this many decimals, or "--" if it is not finite.
[[nodiscard]] QString figureText(double value, int decimals);

/// A rate as `SpeedFormatter` writes it.
[[nodiscard]] QString rateText(std::int64_t bytesPerSec);

/// The time of day in the user's locale and time zone. Empty if no calendar has that time.
[[nodiscard]] QString timeOfDay(double secondsSince1970);

/// The same, or "--" if no calendar has that time.
[[nodiscard]] QString timeText(double secondsSince1970);

} // namespace tidewell
