#include "ui/process/WindowIcon.h"

#include <QString>

namespace tidewell {

QIcon windowIcon() {
  const QIcon theme = QIcon::fromTheme(QStringLiteral("com.halden.Tidewell"));
  QIcon icon;
  // Under X11 every size becomes a part of one property of each window; all that the theme has
  // would be more than a megabyte.
  for (const int size : {16, 24, 32, 48, 64}) {
    const QPixmap picture = theme.pixmap(QSize(size, size), 1.0);
    if (!picture.isNull()) {
      icon.addPixmap(picture);
    }
  }
  return icon;
}

} // namespace tidewell
