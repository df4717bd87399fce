#pragma once

namespace tidewell {

/// Whether windows may be translucent: always under Wayland, under X11 while something composes
/// them.
[[nodiscard]] bool hasCompositing();

} // namespace tidewell
