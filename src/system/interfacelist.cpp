// SPDX-License-Identifier: MIT
#include "system/interfacelist.h"

#include <QJsonArray>

#include <algorithm>
#include <array>

namespace aux
{

namespace
{

/// A kind of interface as the network object shows it.
struct InterfaceKind {
    QNetworkInterface::InterfaceType type;
    QLatin1String key;
    QLatin1String nameInUse; // deliberately a fixed name, not that of the interface shown
};
const std::array<InterfaceKind, 2> kinds = {{
    {QNetworkInterface::Ethernet, QLatin1String("eth"), QLatin1String("eth0")},
    {QNetworkInterface::Wifi, QLatin1String("wlan"), QLatin1String("wlan0")},
}};

bool isOfType(const Interface &interface, QNetworkInterface::InterfaceType type)
{
    return interface.type == type && !(interface.flags & QNetworkInterface::IsLoopBack);
}

/// The first interface of this type, else null.
const Interface *firstOf(const InterfaceList &interfaces, QNetworkInterface::InterfaceType type)
{
    const InterfaceList::const_iterator found =
        std::find_if(interfaces.begin(), interfaces.end(),
                     [type](const Interface &interface) { return isOfType(interface, type); });
    return found == interfaces.end() ? nullptr : &*found;
}

bool isUp(const Interface &interface)
{
    return interface.flags & QNetworkInterface::IsUp;
}

bool isIPv4(const QHostAddress &address)
{
    return address.protocol() == QAbstractSocket::IPv4Protocol;
}

QJsonObject description(const Interface &interface)
{
    const QString ip = QStringLiteral("ip");
    QJsonArray addresses;
    for (const QHostAddress &address : interface.addresses) {
        const QLatin1String type(isIPv4(address) ? "ip4" : "ip6");
        addresses += QJsonObject{{ip, address.toString()}, {QStringLiteral("type"), type}};
    }
    return {{QStringLiteral("mac"), interface.hardwareAddress},
            {QStringLiteral("interface"), interface.name},
            {ip, addresses}};
}

} // namespace

QString ethernetAddress(const InterfaceList &interfaces)
{
    const Interface *interface = firstOf(interfaces, QNetworkInterface::Ethernet);
    return interface == nullptr ? QString() : interface->hardwareAddress;
}

QJsonObject networkInfo(const InterfaceList &interfaces, const QString &nameInUse)
{
    QLatin1String active("none");
    QJsonObject info;
    for (const InterfaceKind &kind : kinds) {
        const Interface *interface = firstOf(interfaces, kind.type);
        info.insert(kind.key, interface == nullptr ? QJsonObject() : description(*interface));
        if (interface != nullptr && isUp(*interface) && nameInUse == kind.nameInUse)
            active = kind.key;
    }
    info.insert(QStringLiteral("active"), active);
    return info;
}

QString activeIPv4(const InterfaceList &interfaces)
{
    // Deliberately from the end: the last interface that has one decides.
    for (auto interface = interfaces.rbegin(); interface != interfaces.rend(); ++interface) {
        if (!isUp(*interface) || (!isOfType(*interface, QNetworkInterface::Ethernet) &&
                                  !isOfType(*interface, QNetworkInterface::Wifi)))
            continue;
        const auto &addresses = interface->addresses;
        const QVector<QHostAddress>::const_iterator found =
            std::find_if(addresses.begin(), addresses.end(), isIPv4);
        if (found != addresses.end())
            return found->toString();
    }
    return {};
}

} // namespace aux
