#pragma once

namespace tidewell {

/// A label as long as the longest: every label up to 10 GB/s takes no more room.
inline constexpr const char* labelGuide = "↓10000M ↑10000M";

/// The same when the user hides the upload rate.
inline constexpr const char* labelGuideWithoutUpload = "↓10000M";

} // namespace tidewell
