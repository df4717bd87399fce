#include "ui/placement/PanelFrame.h"

namespace tidewell {

PanelFrame::PanelFrame(QWidget* panel, QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::NoFocus);
  setWidget(panel);
  // The panel paints its own, and what lies behind shines through.
  panel->setAutoFillBackground(false);
  viewport()->setAutoFillBackground(false);
}

QSize PanelFrame::fit(const QSize& room) {
  widget()->adjustSize();
  resize(widget()->size().boundedTo(room));
  return size();
}

} // namespace tidewell
