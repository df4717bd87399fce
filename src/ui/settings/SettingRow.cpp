#include "ui/settings/SettingRow.h"

#include "ui/components/Divider.h"
#include "ui/components/TextLine.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace tidewell {

namespace {

constexpr int edgePadding = 10;
constexpr int textSpacing = 2;
constexpr int leastGap = 16;

TextStyle descriptionStyle() {
  static const QFont font = TWFont::standard(11, QFont::Normal);
  return {font, TWColor::textTertiary()};
}

} // namespace

SettingRow::SettingRow(const QString& title, const QString& description, QWidget* control,
                       QWidget* parent)
    : QWidget(parent) {
  control->setAccessibleName(title);
  control->setAccessibleDescription(description);
  auto* const titleLine = new TextLine({TWFont::body(), TWColor::text()}, this);
  titleLine->setText(title);
  auto* const descriptionLine = new TextLine(descriptionStyle(), this);
  descriptionLine->setText(description);

  auto* const texts = new QVBoxLayout;
  texts->setSpacing(textSpacing);
  texts->addWidget(titleLine);
  texts->addWidget(descriptionLine);
  auto* const row = new QHBoxLayout;
  row->setContentsMargins(0, edgePadding, 0, edgePadding);
  row->setSpacing(leastGap);
  row->addLayout(texts, 1);
  row->addWidget(control);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addLayout(row);
  column->addWidget(Divider::horizontal(this));
}

} // namespace tidewell
