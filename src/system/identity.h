// SPDX-License-Identifier: MIT
#ifndef AUX_SYSTEM_IDENTITY_H
#define AUX_SYSTEM_IDENTITY_H

#include "aux/error.h"
#include "system/interfacelist.h"

namespace aux
{

/// Serial number and hardware addresses, each derived on first use and then kept. SystemInfo has
/// the one of the terminal and says what the operations promise.
class Identity
{
public:
    explicit Identity(InterfaceList (*interfaces)()) : m_interfaces(interfaces) {}

    Error loadEthernetAddress();
    Error loadSerialNumber();
    const QString &serialNumber() const { return m_serialNumber; }
    const QString &wifiAddress();

private:
    InterfaceList (*m_interfaces)();
    QString m_ethernetAddress; // without its colons once the serial number is loaded
    QString m_serialNumber;
    QString m_wifiAddress;
};

} // namespace aux

#endif
