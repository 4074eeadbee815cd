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

/// A text once it is known: nobody refers to one that is still to be written.
const QString &known(const QString &text)
{
    static const QString none;
    return text.isEmpty() ? none : text;
}

} // namespace

Error Identity::loadEthernetAddress()
{
    const QMutexLocker lock(&m_mutex);
    return loadEthernetAddressLocked();
}

Error Identity::loadEthernetAddressLocked()
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
    const QMutexLocker lock(&m_mutex);
    if (!m_serialNumber.isEmpty())
        return {};
    Error error = loadEthernetAddressLocked();
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

const QString &Identity::serialNumber() const
{
    const QMutexLocker lock(&m_mutex);
    return known(m_serialNumber);
}

const QString &Identity::wifiAddress()
{
    QMutexLocker lock(&m_mutex);
    const char *fault = nullptr;
    if (m_wifiAddress.isEmpty()) {
        const WifiAddress derived = aux::wifiAddress(m_ethernetAddress);
        m_wifiAddress = derived.address;
        fault = derived.fault;
    }
    const QString &address = known(m_wifiAddress);
    lock.unlock(); // a message handler may ask, too
    if (fault != nullptr)
        debugLine("getWifiMac", fault);
    return address;
}

} // namespace aux
