#pragma once

#include <QPixmap>

#include <string>

namespace tidewell {

/// The panel's text as a picture, as hosts of the item get it. `edge` is 22 or 44.
[[nodiscard]] QPixmap squarePicture(const std::string& text, int edge);
[[nodiscard]] QPixmap widePicture(const std::string& text);

} // namespace tidewell
