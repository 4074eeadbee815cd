// SPDX-License-Identifier: MIT
#ifndef AUX_SYSTEM_IDENTITY_H
#define AUX_SYSTEM_IDENTITY_H

#include "aux/error.h"
#include "system/interfacelist.h"

#include <QMutex>

namespace aux
{

/// Serial number and hardware addresses, each derived on first use and then kept unchanged, so that
/// a reference to one stays good in any thread. SystemInfo has the one of the terminal and says
/// what the operations promise.
class Identity
{
public:
    explicit Identity(InterfaceList (*interfaces)()) : m_interfaces(interfaces) {}

    Error loadEthernetAddress();
    Error loadSerialNumber();
    const QString &serialNumber() const;
    const QString &wifiAddress();

private:
    Error loadEthernetAddressLocked();

    mutable QMutex m_mutex;
    InterfaceList (*m_interfaces)();
    QString m_ethernetAddress; // without its colons once the serial number is loaded
    QString m_serialNumber;
    QString m_wifiAddress;
};

} // namespace aux

#endif
