#include "ui/detail/DetailStyles.h"

#include "ui/components/TextLine.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

namespace tidewell {
namespace {

TextLine* makeLine(const TextStyle& style, const QString& text, QAccessible::Role role,
                   QWidget* parent) {
  auto* const line = new TextLine(style, parent, role);
  line->setText(text);
  return line;
}

} // namespace

TextLine* makeHeading(const QString& text, QWidget* parent) {
  return makeLine({TWFont::sectionTitle(), TWColor::text}, text, QAccessible::Heading, parent);
}

TextLine* makeSubheading(const QString& text, QWidget* parent) {
  return makeLine({TWFont::standard(13, QFont::Medium), TWColor::textSecondary}, text,
                  QAccessible::Heading, parent);
}

TextLine* makeHint(const QString& text, QWidget* parent) {
  return makeLine({TWFont::body(), TWColor::textSecondary}, text, QAccessible::StaticText, parent);
}

} // namespace tidewell
