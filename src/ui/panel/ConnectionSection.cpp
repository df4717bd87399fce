#include "ui/panel/ConnectionSection.h"

#include "connectivity/ConnectionInfo.h"
#include "ui/components/PanelRow.h"
#include "ui/components/ShownText.h"

#include <QVBoxLayout>

namespace tidewell {

ConnectionSection::ConnectionSection(QWidget* parent)
    : QWidget(parent), m_rows{new PanelRow(QStringLiteral("Network"), this),
                              new PanelRow(QStringLiteral("Interface"), this),
                              new PanelRow(QStringLiteral("Local IP"), this),
                              new PanelRow(QStringLiteral("Public IP"), this),
                              new PanelRow(QStringLiteral("DNS"), this)} {
  setAccessibleName(QStringLiteral("Connection"));
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(20, 12, 20, 12);
  column->setSpacing(0);
  for (PanelRow* row : m_rows) {
    column->addWidget(row);
  }
}

void ConnectionSection::setInfo(const ConnectionInfo& info) {
  m_rows[0]->setValue(shownText(info.networkName));
  m_rows[1]->setValue(shownText(info.interfaceName));
  m_rows[2]->setValue(shownText(info.ipAddress));
  m_rows[3]->setValue(shownText(info.publicIP));
  m_rows[4]->setValue(shownText(info.dns));
}

} // namespace tidewell
