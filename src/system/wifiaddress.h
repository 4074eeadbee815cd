// SPDX-License-Identifier: MIT
#ifndef AUX_SYSTEM_WIFIADDRESS_H
#define AUX_SYSTEM_WIFIADDRESS_H

#include <QString>

namespace aux
{

/// A Wi-Fi address, or else the reason why there is none.
struct WifiAddress {
    QString address;
    const char *fault = nullptr;
};

/// Derives the Wi-Fi address, with colons, from the 12 digits of the Ethernet address.
WifiAddress wifiAddress(const QString &ethernetAddress);

} // namespace aux

#endif
