// SPDX-License-Identifier: MIT
#include "system/interfacelist.h"

namespace aux
{

namespace
{

/// What is up, but without a cable or a network, is not up: Qt 5.15 tells it so, 6.8 does not.
QNetworkInterface::InterfaceFlags flagsOf(const QNetworkInterface &interface)
{
    QNetworkInterface::InterfaceFlags flags = interface.flags();
    if (!(flags & QNetworkInterface::IsRunning))
        flags &= ~QNetworkInterface::InterfaceFlags(QNetworkInterface::IsUp);
    return flags;
}

} // namespace

InterfaceList systemInterfaces()
{
    InterfaceList interfaces;
    for (const QNetworkInterface &interface : QNetworkInterface::allInterfaces()) {
        QVector<QHostAddress> addresses;
        for (const QNetworkAddressEntry &entry : interface.addressEntries())
            addresses += entry.ip();
        interfaces += {interface.type(), flagsOf(interface), interface.name(),
                       interface.hardwareAddress(), addresses};
    }
    return interfaces;
}

} // namespace aux
