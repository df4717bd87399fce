#include "ui/components/ToolTip.h"

#include "ui/components/Painting.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QApplication>
#include <QEvent>
#include <QFontMetrics>
#include <QHelpEvent>
#include <QTextLayout>

#include <algorithm>

namespace tidewell {
namespace {

// In pixels.
constexpr int widest = 300;
constexpr int padding = 8;
constexpr int margin = 6;        // to the edges of the window
constexpr int belowPointer = 18; // so that the pointer does not cover it
constexpr int abovePointer = 4;
constexpr double radius = 6.0;

// Longer texts end in an ellipsis.
constexpr int mostLines = 8;

const QFont& tipFont() { return TWFont::standard(12, QFont::Normal); }

QStringList wrapped(const QString& text, int width) {
  QTextLayout layout(text, tipFont());
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  QStringList lines;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    const bool isLast = lines.size() + 1 == mostLines;
    lines.append(isLast ? QFontMetrics(tipFont()).elidedText(text.mid(line.textStart()),
                                                             Qt::ElideRight, width)
                        : text.mid(line.textStart(), line.textLength()).trimmed());
    if (isLast) {
      break;
    }
  }
  layout.endLayout();
  return lines;
}

/// The part of the window that the user sees as one: the panel may be in a larger surface.
QRect visiblePart(const QWidget& owner) {
  const QWidget& window = *owner.window();
  const QWidget* part = &owner;
  while (part->parentWidget() != nullptr && part->parentWidget() != &window) {
    part = part->parentWidget();
  }
  const bool isTranslucent = window.testAttribute(Qt::WA_TranslucentBackground);
  return isTranslucent && part != &window ? part->geometry() : window.rect();
}

} // namespace

ToolTip::ToolTip(QWidget& owner)
    : PaintedWidget(QAccessible::ToolTip, owner.window()), m_owner(&owner) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  connect(&owner, &QObject::destroyed, this, &QObject::deleteLater);
  qApp->installEventFilter(this);
}

ToolTip* ToolTip::shownFor(const QWidget& owner) {
  auto* const found = owner.window()->findChild<ToolTip*>({}, Qt::FindDirectChildrenOnly);
  return found != nullptr && found->m_owner == &owner ? found : nullptr;
}

void ToolTip::show(QWidget& owner, const QPoint& place) {
  delete owner.window()->findChild<ToolTip*>({}, Qt::FindDirectChildrenOnly);
  auto* const tip = new ToolTip(owner);
  tip->m_place = owner.mapTo(owner.window(), place);
  tip->fit();
  tip->QWidget::show();
  tip->raise();
}

bool ToolTip::showFor(QWidget& owner, const QEvent& event) {
  if (owner.toolTip().isEmpty()) {
    return false;
  }
  show(owner, static_cast<const QHelpEvent&>(event).pos());
  return true;
}

void ToolTip::textChanged(QWidget& owner) {
  ToolTip* const tip = shownFor(owner);
  if (tip == nullptr) {
    return;
  }
  if (owner.toolTip().isEmpty()) {
    tip->deleteLater();
  } else {
    tip->fit();
  }
}

void ToolTip::fit() {
  const QString text = m_owner->toolTip();
  setSpoken(text);
  const QRect room = visiblePart(*m_owner).adjusted(margin, margin, -margin, -margin);
  const QFontMetrics metrics(tipFont());
  m_lines = wrapped(text, std::max(1, std::min(widest, room.width() - 2 * padding)));
  int width = 0;
  for (const QString& line : m_lines) {
    width = std::max(width, metrics.horizontalAdvance(line));
  }
  const QSize size(width + 2 * padding,
                   static_cast<int>(m_lines.size()) * metrics.height() + 2 * padding);
  const bool fitsBelow = m_place.y() + belowPointer + size.height() <= room.bottom();
  const int top =
      fitsBelow ? m_place.y() + belowPointer : m_place.y() - abovePointer - size.height();
  const int left = std::min(m_place.x(), room.right() + 1 - size.width());
  setGeometry({{std::max(room.left(), left), std::max(room.top(), top)}, size});
  update();
}

void ToolTip::paintEvent(QPaintEvent* /*event*/) {
  SmoothPainter painter(this);
  fillRounded(painter, rect(), radius, TWColor::textTertiary);
  const DevicePixels grid(painter);
  const double border = grid.thickness(1);
  fillRounded(painter, grid.rect(rect()).adjusted(border, border, -border, -border),
              radius - border, TWColor::surface3);
  painter.setFont(tipFont());
  painter.setPen(TWColor::text);
  const QFontMetrics metrics(tipFont());
  int top = padding;
  for (const QString& line : m_lines) {
    painter.drawText(padding, top + metrics.ascent(), line);
    top += metrics.height();
  }
}

bool ToolTip::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
  case QEvent::Leave:
  case QEvent::Hide:
    if (watched == m_owner) {
      deleteLater();
    }
    break;
  case QEvent::KeyPress:
  case QEvent::MouseButtonPress:
  case QEvent::Wheel:
  case QEvent::WindowDeactivate:
    deleteLater();
    break;
  default:
    break;
  }
  return false;
}

} // namespace tidewell
