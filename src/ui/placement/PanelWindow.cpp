#include "ui/placement/PanelWindow.h"

#include "ui/panel/PopoverView.h"
#include "ui/placement/LayerPanelWindow.h"
#include "ui/placement/ToolPanelWindow.h"

#include <QGuiApplication>
#include <QKeyEvent>

namespace tidewell {

PanelFrame::PanelFrame(QWidget* panel, QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::NoFocus);
  setWidget(panel);
  // The panel paints its own background, which may be translucent.
  panel->setAutoFillBackground(false);
  viewport()->setAutoFillBackground(false);
}

QSize PanelFrame::fit(const QSize& room) {
  widget()->adjustSize();
  resize(widget()->size().boundedTo(room));
  return size();
}

std::unique_ptr<PanelWindow> PanelWindow::make() {
  if (LayerPanelWindow::isSupported()) {
    return std::make_unique<LayerPanelWindow>();
  }
  return std::make_unique<ToolPanelWindow>();
}

PanelWindow::PanelWindow(Qt::WindowFlags flags) : QWidget(nullptr, flags) {
  setWindowTitle(QStringLiteral("Tidewell"));
}

void PanelWindow::dismiss(Dismissal how) {
  if (isVisible()) {
    hide();
    Q_EMIT dismissed(how);
  }
}

void PanelWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    dismiss(Dismissal::here);
  } else {
    QWidget::keyPressEvent(event);
  }
}

void PanelWindow::closeEvent(QCloseEvent* /*event*/) { dismiss(Dismissal::here); }

void PanelWindow::blurBehind(const QRect& panel) {
  if (!testAttribute(Qt::WA_TranslucentBackground)) {
    return;
  }
  if (!m_blur) {
    m_blur.emplace(*this);
  }
  m_blur->set(panel, panelRadius);
}

} // namespace tidewell
