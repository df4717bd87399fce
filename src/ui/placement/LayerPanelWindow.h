#pragma once

#include "ui/placement/PanelPlacement.h"
#include "ui/placement/PanelWindow.h"

#include <QElapsedTimer>
#include <QSize>
#include <QTimer>

namespace tidewell {

class LayerSurface;
class PanelFrame;

/// The panel's window on compositors with a layer shell: a transparent surface that covers the
/// screen. The compositor reveals neither where the item is nor where the bars are, only how much
/// space they take. A click beside the panel dismisses it.
class LayerPanelWindow final : public PanelWindow {
  Q_OBJECT

public:
  LayerPanelWindow();
  ~LayerPanelWindow() override;

  /// Whether the display supports such windows.
  [[nodiscard]] static bool isSupported();

  void open(QWidget* content, std::optional<QPoint> point) override;

protected:
  void dismiss(Dismissal how) override;
  void enterEvent(QEnterEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  void configured(const QSize& size);
  void begin();
  void showPanel();
  void place();
  [[nodiscard]] PanelPlace bestPlace() const;

  std::unique_ptr<LayerSurface> m_surface;
  PanelFrame* m_frame = nullptr;
  QSize m_workSize;                // of the screen without bars
  std::optional<QPoint> m_told;    // by the item's host
  std::optional<QPoint> m_pointer; // on this surface
  QTimer m_patience;
  QElapsedTimer m_sinceShown;
};

} // namespace tidewell
