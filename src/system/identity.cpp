// SPDX-License-Identifier: MIT
#include "system/identity.h"

#include "error/debugline.h"
#include "error/failure.h"
#include "system/wifiaddress.h"

namespace aux
{

namespace
{

constexpr int shortestSerialNumber = 5;

} // namespace

Error Identity::loadEthernetAddress()
{
    if (m_ethernetAddress.isEmpty())
        m_ethernetAddress = ethernetAddress(m_interfaces());
    if (m_ethernetAddress.isEmpty())
        return failure(ErrorId::General,
                       QStringLiteral("SystemInfo: cannot find ethernet hardware address"));
    return {};
}

Error Identity::loadSerialNumber()
{
    if (!m_serialNumber.isEmpty())
        return {};
    Error error = loadEthernetAddress();
    if (error.hasError())
        return error;
    // Deliberately of the cached address itself: the Wi-Fi address is derived from the bare digits.
    m_ethernetAddress.remove(QLatin1Char(':'));
    m_serialNumber = m_ethernetAddress;
    if (m_serialNumber.size() < shortestSerialNumber) {
        m_serialNumber = QStringLiteral("000000000000");
        return failure(ErrorId::General,
                       QStringLiteral("SystemInfo: invalid serial number format"));
    }
    return {};
}

const QString &Identity::wifiAddress()
{
    if (m_wifiAddress.isEmpty()) {
        const WifiAddress derived = aux::wifiAddress(m_ethernetAddress);
        if (derived.fault != nullptr)
            debugLine("getWifiMac", derived.fault);
        m_wifiAddress = derived.address;
    }
    return m_wifiAddress;
}

} // namespace aux
