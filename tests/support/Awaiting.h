#pragma once

#include "base/Async.h"

#include <functional>
#include <optional>
#include <utility>

namespace tidewell::test {

/// Puts what the work gives into `result`, which outlives the work.
template <class T> Async<> store(Async<T> work, std::optional<T>* result) {
  *result = co_await std::move(work);
}

/// What the work gives after `serve` has let time pass; T() when it is not done by then.
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
