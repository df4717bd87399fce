#include "ui/detail/DiagnosticGroup.h"

#include "ui/components/TextLine.h"
#include "ui/detail/DetailStyles.h"
#include "ui/detail/DiagnosticRow.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace tidewell {

namespace {

// So that a title stands equally far above its rows with and without a button beside it.
constexpr int titleHeight = 28;

} // namespace

DiagnosticGroup::DiagnosticGroup(const QString& title, QWidget* parent)
    : SpokenGroup(QAccessible::Grouping, title, parent), m_column(new QVBoxLayout(this)),
      m_titleRow(new QHBoxLayout) {
  m_column->setContentsMargins(0, 0, 0, 0);
  m_column->setSpacing(0);
  m_titleRow->addStrut(titleHeight);
  m_titleRow->addWidget(makeSubheading(title, this), 1);
  m_column->addLayout(m_titleRow);
}

DiagnosticRow* DiagnosticGroup::diagnosticRow(const char* label) {
  auto* const row = new DiagnosticRow(QString::fromLatin1(label), this);
  add(row);
  return row;
}

void DiagnosticGroup::add(QWidget* widget) { m_column->addWidget(widget); }

void DiagnosticGroup::addBesideTitle(QWidget* widget) { m_titleRow->addWidget(widget); }

} // namespace tidewell
