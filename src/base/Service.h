#pragma once

#include "base/Scheduler.h"

#include <memory>
#include <utility>

namespace tidewell {

/// Makes a shared object that is always destroyed on `main`, wherever its last owner lets go.
///
/// A queue's task turns its weak reference into a strong one for as long as it works, so the last
/// owner of a service may be a worker; published values, however, live and die on the main thread.
template <class T, class... Args> std::shared_ptr<T> makeService(WorkQueue& main, Args&&... args) {
  auto retire = [&main](T* service) {
    if (main.isCurrent()) {
      delete service;
      return;
    }
    // Owned by the task, so that a queue which drops it unrun still destroys the service.
    main.post([owned = std::shared_ptr<T>(service)]() mutable { owned.reset(); });
  };
  return std::shared_ptr<T>(new T(std::forward<Args>(args)...), retire);
}

} // namespace tidewell
