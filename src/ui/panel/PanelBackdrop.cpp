#include "ui/panel/PanelBackdrop.h"

#include "ui/tokens/TWColor.h"

#include <QPainter>
#include <QPen>
#include <QRect>

namespace tidewell {

namespace {

// Nothing blurs what lies behind, so only a trace of it may shine through the text.
constexpr double translucentOpacity = 0.94;

} // namespace

void paintBackdrop(QPainter& painter, const QRect& panel, Backdrop backdrop) {
  if (backdrop == Backdrop::opaque) {
    painter.fillRect(panel, TWColor::surface());
    painter.setPen(TWColor::surface3());
    painter.drawRect(panel.adjusted(0, 0, -1, -1));
    return;
  }
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(TWColor::surface3(), 1.0));
  painter.setBrush(withOpacity(TWColor::surface(), translucentOpacity));
  painter.drawRoundedRect(QRectF(panel).adjusted(0.5, 0.5, -0.5, -0.5), panelRadius - 0.5,
                          panelRadius - 0.5);
}

} // namespace tidewell
