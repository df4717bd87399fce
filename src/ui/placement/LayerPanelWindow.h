#pragma once

#include "ui/placement/PanelWindow.h"

#include <QSize>
#include <QTimer>

namespace tidewell {

class LayerSurface;
class PanelFrame;

/// A panel under compositors with a layer shell: a transparent surface over the whole screen with
/// the panel on it. It learns from the pointer where the user has clicked, since the compositor
/// tells nobody where bars and their items are, and a click beside the panel reaches it.
class LayerPanelWindow final : public PanelWindow {
  Q_OBJECT

public:
  LayerPanelWindow();
  ~LayerPanelWindow() override;

  /// Whether the display takes such panels.
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
  QSize m_workSize; // of the screen beside its bars
  std::optional<QPoint> m_anchor;
  QTimer m_patience;
};

} // namespace tidewell
