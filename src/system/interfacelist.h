// SPDX-License-Identifier: MIT
#ifndef AUX_SYSTEM_INTERFACELIST_H
#define AUX_SYSTEM_INTERFACELIST_H

#include <QHostAddress>
#include <QJsonObject>
#include <QNetworkInterface>
#include <QVector>

namespace aux
{

/// What counts of a network interface. A value of our own, as Qt's cannot be made by hand.
struct Interface {
    QNetworkInterface::InterfaceType type = QNetworkInterface::Unknown;
    QNetworkInterface::InterfaceFlags flags;
    QString name;
    QString hardwareAddress;
    QVector<QHostAddress> addresses;
};

/// In the system's order.
using InterfaceList = QVector<Interface>;

/// The system's interfaces as they are now.
InterfaceList systemInterfaces();

/// The hardware address of the first Ethernet interface; empty if there is none.
QString ethernetAddress(const InterfaceList &interfaces);

/// The object that SystemInfo::getNetworkInfo describes.
QJsonObject networkInfo(const InterfaceList &interfaces, const QString &nameInUse);

/// The first IPv4 address of the last interface that is up and has one; empty if there is none.
QString activeIPv4(const InterfaceList &interfaces);

} // namespace aux

#endif
