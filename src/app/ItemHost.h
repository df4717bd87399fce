#pragma once

#include "base/Scheduler.h"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace tidewell {

/// How a status item host shows text.
enum class ItemPresentation {
  label,       ///< The host shows a label beside or instead of the icon.
  widePicture, ///< It shows pictures of any width.
  squareTile,  ///< It squeezes every picture into a square.
};

/// The best presentation for a known host; nullopt for any other. Names of desktops say nothing,
/// because some desktops name others as their relatives.
///
/// `process` is the name of the process that owns the watcher or reads the item, up to 15
/// characters, empty if it is not known.
[[nodiscard]] std::optional<ItemPresentation> presentationOf(std::string_view process);

/// Whether the host reports a click in screen coordinates. `process` as above.
[[nodiscard]] bool tellsClickedPlace(std::string_view process);

/// Whether the host reads all of the item, the tool tip too, when its picture changes. `process` as
/// above.
[[nodiscard]] bool readsAllWithPicture(std::string_view process);

/// Decides when the windows' process has to show the item because no panel does.
class FallbackItem {
public:
  /// Borrows the queue. `show` is called with each change.
  FallbackItem(WorkQueue& main, std::function<void(bool isWanted)> show);

  /// A panel has taken the item or is gone. A panel that restarts gets some seconds to come back.
  void setTaken(bool isTaken);

private:
  WorkQueue& m_main;
  std::function<void(bool isWanted)> m_show;
  std::unique_ptr<Timer> m_patience;
  bool m_isShown = false;
};

} // namespace tidewell
