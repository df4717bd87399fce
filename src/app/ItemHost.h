#pragma once

#include <string_view>

namespace tidewell {

/// How a status item host shows text.
enum class ItemPresentation {
  label,       ///< The host shows a label beside or instead of the icon.
  widePicture, ///< It shows pictures of any width.
  squareTile,  ///< It squeezes every picture into a square.
};

/// What suits the host best.
///
/// `process` is the name of the process that owns the watcher, up to 15 characters as the kernel
/// tells it, empty when it is not known; `desktop` is XDG_CURRENT_DESKTOP, which decides when the
/// process is none that is known. Pure.
[[nodiscard]] ItemPresentation presentationFor(std::string_view process, std::string_view desktop);

/// Whether the host tells where on the screen its item was clicked. `process` as above. Pure.
[[nodiscard]] bool tellsClickedPlace(std::string_view process);

} // namespace tidewell
