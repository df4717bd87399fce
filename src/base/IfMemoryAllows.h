#pragma once

#include <new>

namespace tidewell {

/// Calls the function, which may need as much memory as somebody else has written, and tells
/// whether there was enough. When there was not, what it had done until then stays done, so it
/// should hand over its result in its last step. Everywhere else a lack of memory ends the program.
template <class Function> [[nodiscard]] bool ifMemoryAllows(Function&& function) {
  try {
    function();
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

} // namespace tidewell
