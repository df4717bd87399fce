#include "ui/detail/ConnectionGroup.h"

#include "connectivity/ConnectionInfo.h"
#include "ui/components/ShownText.h"
#include "ui/detail/DiagnosticRow.h"
#include "ui/tokens/TWColor.h"

namespace tidewell {

ConnectionGroup::ConnectionGroup(QWidget* parent)
    : DiagnosticGroup(QStringLiteral("Connection"), parent),
      m_status(diagnosticRow("Status")), m_details{diagnosticRow("Interface"),
                                                   diagnosticRow("Network"),
                                                   diagnosticRow("Local IP"),
                                                   diagnosticRow("Public IP"),
                                                   diagnosticRow("DNS Server"),
                                                   diagnosticRow("Interface Type")} {}

void ConnectionGroup::setConnected(bool isConnected) {
  m_status->setValue(isConnected ? QStringLiteral("Connected") : QStringLiteral("Disconnected"),
                     isConnected ? TWColor::green() : TWColor::red());
}

void ConnectionGroup::setInfo(const ConnectionInfo& info) {
  m_details[0]->setValue(shownText(info.interfaceName), TWColor::text());
  m_details[1]->setValue(shownText(info.networkName), TWColor::text());
  m_details[2]->setValue(shownText(info.ipAddress), TWColor::text());
  m_details[3]->setValue(shownText(info.publicIP), TWColor::text());
  m_details[4]->setValue(shownText(info.dns), TWColor::text());
  m_details[5]->setValue(shownText(rawValue(info.interfaceType)), TWColor::text());
}

} // namespace tidewell
