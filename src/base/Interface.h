#pragma once

namespace tidewell {

/// Base of the interfaces. They are neither copied nor moved.
class Interface {
public:
  Interface() = default;
  Interface(Interface&&) = delete;
  virtual ~Interface() = default;
};

} // namespace tidewell
