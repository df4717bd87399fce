#pragma once

#include <QIcon>

namespace tidewell {

/// The program's icon of the desktop's theme in the sizes that window lists and title bars show;
/// null where it is not installed. Main thread.
[[nodiscard]] QIcon windowIcon();

} // namespace tidewell
