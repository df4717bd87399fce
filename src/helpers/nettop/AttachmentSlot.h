#pragma once

#include <cstdint>

namespace tidewell::nettop {

/// Takes the right to load and attach programs for an ordinary user, until the process ends.
/// Returns false if no slot is free. Does not wait. Needs CAP_NET_ADMIN.
///
/// This bounds what helpers cost that are stopped while their programs are attached: there are two
/// slots for each user, so that one more can measure beside a resident, and eight for all users
/// together. Root needs none.
[[nodiscard]] bool takeAttachmentSlot(std::uint32_t user);

} // namespace tidewell::nettop
