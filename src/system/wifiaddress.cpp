// SPDX-License-Identifier: MIT
#include "system/wifiaddress.h"

namespace aux
{

namespace
{

constexpr int digits = 12;
constexpr int octetAt = 6; // the fourth one
constexpr int octetSize = 2;
constexpr unsigned int lastOctet = 0xFE; // one more is still an octet

QString withColons(QString address)
{
    for (int at = octetSize; at < address.size(); at += octetSize + 1)
        address.insert(at, QLatin1Char(':'));
    return address;
}

} // namespace

WifiAddress wifiAddress(const QString &ethernetAddress)
{
    if (ethernetAddress.isEmpty())
        return {{}, ": empty eth mac address"};
    if (ethernetAddress.size() != digits)
        return {{}, ": eth mac address incorrect length"};
    bool converted = false;
    const int octet = ethernetAddress.mid(octetAt, octetSize).toInt(&converted, 16);
    if (!converted)
        return {{}, ": eth mac address bytes inconvertible"};
    if (static_cast<unsigned int>(octet) > lastOctet) // a negative number, too
        return {{}, ": eth mac address bytes not in range"};

    // Deliberately without a leading zero, even where that makes the address one digit shorter.
    const QString next = QString::number(octet + 1, 16).toUpper();
    return {withColons(QString(ethernetAddress).replace(octetAt, octetSize, next))};
}

} // namespace aux
