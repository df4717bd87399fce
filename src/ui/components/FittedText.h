#pragma once

#include <QFont>
#include <QPainter>
#include <QRect>
#include <QString>

namespace tidewell {

/// Text whose digits all have the width of the widest, so that changing numbers do not move. For
/// one line of left-to-right text in a proportional font.
struct TabularText {
  /// In pixels.
  [[nodiscard]] static double width(const QFont& font, const QString& text);
  /// Draws with the painter's font and pen.
  static void draw(QPainter& painter, QPointF baseline, const QString& text);
};

/// The style of a line of text.
struct TextStyle {
  QFont font;
  QColor color;
  Qt::Alignment alignment = Qt::AlignLeft;
  /// Text that is too wide shrinks to this size in pixels before it is cut. 0: it does not shrink.
  int smallestPixelSize = 0;
  Qt::TextElideMode elide = Qt::ElideRight;
  /// Whether all digits have the same width, in a proportional font.
  bool isTabular = false;
};

/// A line of text, fitted to a width.
struct FittedText {
  QFont font;
  QString text;
  /// Of the fitted text in pixels, without the letter spacing after its last letter.
  double width;
  /// Whether the text was shortened.
  bool isCut = false;

  FittedText(const QString& wanted, const TextStyle& style, double room);
};

/// The text if it has to be cut to fit into this room, otherwise empty: what a tool tip shows.
[[nodiscard]] QString ifCut(const QString& text, const TextStyle& style, double room);

/// Width of a line in pixels, without the letter spacing after its last letter.
[[nodiscard]] double lineWidth(const QString& text, const TextStyle& style);

/// Height of a line of this style in pixels, for any characters.
[[nodiscard]] int lineHeight(const TextStyle& style);

/// Draws a line at the top of the box, fitted to the box's width. Fallback fonts do not move the
/// baseline. Returns whether the text was cut.
bool drawLine(QPainter& painter, const QRectF& box, const QString& text, const TextStyle& style);

} // namespace tidewell
