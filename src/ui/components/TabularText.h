#pragma once

#include <QFont>
#include <QPainter>
#include <QString>

namespace tidewell {

/// Text whose digits all take the width of the widest, so that a changing number keeps its place
/// and moves nothing beside it. For one line of left-to-right text in a proportional font.
struct TabularText {
  /// In pixels.
  [[nodiscard]] static double width(const QFont& font, const QString& text);
  /// Draws with the painter's font and pen.
  static void draw(QPainter& painter, QPointF baseline, const QString& text);
};

} // namespace tidewell
