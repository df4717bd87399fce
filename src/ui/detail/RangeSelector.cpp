#include "ui/detail/RangeSelector.h"

#include "ui/detail/RangeButton.h"

#include <QHBoxLayout>

namespace tidewell {

namespace {

constexpr int spacing = 4;

} // namespace

RangeSelector::RangeSelector(QWidget* parent)
    : SpokenGroup(QAccessible::Grouping, QStringLiteral("Time range"), parent) {
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(spacing);
  for (const TimeRange range : allTimeRanges) {
    const std::string_view text = rawValue(range);
    auto* const button = new RangeButton(
        QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())), this);
    button->setChecked(range == m_selection);
    connect(button, &QRadioButton::toggled, this, [this, range](bool isChosen) {
      if (isChosen) {
        m_selection = range;
      }
    });
    row->addWidget(button);
  }
}

} // namespace tidewell
