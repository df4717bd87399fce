#pragma once

#include <QFont>
#include <QPainter>
#include <QRect>
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

/// One line of text and how it is to look.
struct TextStyle {
  QFont font;
  QColor color;
  Qt::Alignment alignment = Qt::AlignLeft;
  /// Text too wide for its place is set smaller down to this size in pixels, and then cut. 0: it
  /// is cut at once.
  int smallestPixelSize = 0;
  Qt::TextElideMode elide = Qt::ElideRight;
  /// Whether digits all take the same width, in a proportional font.
  bool isTabular = false;
};

/// A line of text made to fit a width.
struct FittedText {
  QFont font;
  QString text;
  /// Whether something of the text is missing.
  bool isCut = false;

  FittedText(const QString& wanted, const TextStyle& style, double width);
};

/// Width of a line in pixels, without the space that letter spacing adds behind it.
[[nodiscard]] double lineWidth(const QString& text, const TextStyle& style);

/// Height in pixels of the lines of a style, whatever characters they have.
[[nodiscard]] int lineHeight(const TextStyle& style);

/// Draws a line with its baseline where the style's own would lie in a box of `lineHeight`,
/// starting at the box's top. Whatever is too long for the box is fitted. Tells whether the text
/// was cut.
bool drawLine(QPainter& painter, const QRectF& box, const QString& text, const TextStyle& style);

} // namespace tidewell
