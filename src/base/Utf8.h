#pragma once

#include <string_view>

namespace tidewell {

/// Whether the bytes are well-formed UTF-8: no overlong forms, no surrogates, nothing above
/// U+10FFFF.
[[nodiscard]] bool isUtf8(std::string_view bytes);

} // namespace tidewell
