#pragma once

#include "processes/ProcessUsage.h"
#include "ui/components/PaintedWidget.h"

#include <array>
#include <cstddef>

namespace tidewell {

/// What one program has moved, with its initial and a bar for its share. Main thread.
class ProcessRow final : public PaintedWidget {
  Q_OBJECT

public:
  /// The colour follows from the row's index, not from the program.
  ProcessRow(std::size_t index, QWidget* parent);

  void setUsage(const ProcessUsage& usage);

  [[nodiscard]] QString name() const { return m_name; }
  [[nodiscard]] QString initial() const { return m_initial; }
  /// Download, upload and total, as shown.
  [[nodiscard]] const std::array<QString, 3>& figures() const { return m_figures; }
  /// The filled part of the bar, in the row's coordinates.
  [[nodiscard]] QRectF bar() const;

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  [[nodiscard]] QRect track() const;
  [[nodiscard]] QRect nameBox() const;
  void paintProgram(QPainter& painter) const;
  void paintFigures(QPainter& painter) const;
  void paintBar(QPainter& painter) const;
  void updateToolTip();

  const QColor& m_color;
  ProcessUsage m_usage;
  QString m_name;
  QString m_initial;
  std::array<QString, 3> m_figures;
};

} // namespace tidewell
