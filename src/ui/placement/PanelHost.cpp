#include "ui/placement/PanelHost.h"

#include "ui/placement/LayerPanelHost.h"
#include "ui/placement/ToolPanelHost.h"

#include <QGuiApplication>
#include <QKeyEvent>

namespace tidewell {

std::unique_ptr<PanelHost> PanelHost::make() {
  if (LayerPanelHost::isSupported()) {
    return std::make_unique<LayerPanelHost>();
  }
  return std::make_unique<ToolPanelHost>();
}

PanelHost::PanelHost(Qt::WindowFlags flags) : QWidget(nullptr, flags) {
  setWindowTitle(QStringLiteral("Tidewell"));
}

void PanelHost::dismiss(Dismissal how) {
  if (isVisible()) {
    hide();
    Q_EMIT dismissed(how);
  }
}

void PanelHost::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    dismiss(Dismissal::here);
  } else {
    QWidget::keyPressEvent(event);
  }
}

} // namespace tidewell
