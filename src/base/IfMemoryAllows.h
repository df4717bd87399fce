#pragma once

#include <new>

namespace tidewell {

/// Calls a function whose need for memory depends on foreign input. Returns false if there was not
/// enough; what the function did until then stays, so it should store its result last. Anywhere
/// else, running out of memory ends the program.
template <class Function> [[nodiscard]] bool ifMemoryAllows(Function&& function) {
  try {
    function();
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

} // namespace tidewell
