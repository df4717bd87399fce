#pragma once

#include "ui/placement/PanelWindow.h"

#include <QSize>
#include <QTimer>

namespace tidewell {

class LayerSurface;
class PanelFrame;

/// The panel's window on compositors with a layer shell: a transparent surface that covers the
/// screen. The pointer's position replaces the item's, which the compositor does not reveal. A
/// click beside the panel dismisses it.
class LayerPanelWindow final : public PanelWindow {
  Q_OBJECT

public:
  LayerPanelWindow();
  ~LayerPanelWindow() override;

  /// Whether the display supports such windows.
  [[nodiscard]] static bool isSupported();

  void open(QWidget* content, std::optional<QPoint> point) override;

protected:
  void enterEvent(QEnterEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  void configured(const QSize& size);
  void showPanel(std::optional<QPoint> pointer);
  void place();

  std::unique_ptr<LayerSurface> m_surface;
  PanelFrame* m_frame = nullptr;
  QSize m_workSize; // of the screen without bars
  std::optional<QPoint> m_anchor;
  QTimer m_patience;
};

} // namespace tidewell
