#pragma once

#include "helpers/networkQuality/Transfer.h"
#include "helpers/networkQuality/TransferLoop.h"

namespace tidewell {

/// Makes one transfer that has a limit, and waits until it is over or the loop is stopped.
void performAlone(TransferLoop& loop, Transfer& transfer);

} // namespace tidewell
