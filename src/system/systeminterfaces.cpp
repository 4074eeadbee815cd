// SPDX-License-Identifier: MIT
#include "system/interfacelist.h"

namespace aux
{

InterfaceList systemInterfaces()
{
    InterfaceList interfaces;
    for (const QNetworkInterface &interface : QNetworkInterface::allInterfaces()) {
        QVector<QHostAddress> addresses;
        for (const QNetworkAddressEntry &entry : interface.addressEntries())
            addresses += entry.ip();
        interfaces += {interface.type(), interface.flags(), interface.name(),
                       interface.hardwareAddress(), addresses};
    }
    return interfaces;
}

} // namespace aux
