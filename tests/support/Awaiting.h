#pragma once

#include "base/Async.h"

#include <functional>
#include <optional>
#include <utility>

namespace tidewell::test {

/// Stores the work's result in `result`, which outlives the work.
template <class T> Async<> store(Async<T> work, std::optional<T>* result) {
  *result = co_await std::move(work);
}

/// The work's result after `serve` has let time pass; T() if it is not done by then.
template <class T> T awaited(Async<T> work, const std::function<void()>& serve) {
  std::optional<T> result;
  Async<> storing = store(std::move(work), &result);
  storing.start([] {});
  if (!storing.isDone()) {
    serve();
  }
  return std::move(result).value_or(T());
}

} // namespace tidewell::test
