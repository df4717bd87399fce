#pragma once

namespace tidewell {

/// Whether the desktop's settings forbid the sound of a notice: event sounds are off, or Xfce's
/// notifications must not disturb.
///
/// Asks the settings portal and Xfce's settings on the session bus if they are running, and starts
/// neither. Waits at most half a second for each answer; without an answer nothing is forbidden.
[[nodiscard]] bool isSoundForbidden();

} // namespace tidewell
