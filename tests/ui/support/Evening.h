#pragma once

#include "sampling/NetworkSnapshot.h"

namespace tidewell::test {

/// So many samples of an ordinary evening: a calm floor, two downloads, some noise. The same
/// everywhere.
[[nodiscard]] SnapshotList evening(int count);

} // namespace tidewell::test
