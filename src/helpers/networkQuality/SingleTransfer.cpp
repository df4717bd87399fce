#include "helpers/networkQuality/SingleTransfer.h"

namespace tidewell {

void performAlone(TransferLoop& loop, Transfer& transfer) {
  bool isOver = false;
  transfer.onFinished([&isOver] { isOver = true; });
  TransferPool pool(loop, 1);
  pool.add(transfer);
  while (!isOver && !loop.isStopped()) {
    loop.serve(TransferLoop::now() + 1.0);
  }
  if (!isOver) {
    pool.remove(transfer);
  }
}

} // namespace tidewell
