// SPDX-License-Identifier: MIT
#ifndef AUX_SYSTEM_WIFI_H
#define AUX_SYSTEM_WIFI_H

#include "aux/systemhelper.h"
#include "error/reason.h"

// What SystemHelper asks the Wi-Fi daemon, with the reason where it gives no answer as a value.

namespace aux
{

/// The networks of SystemHelper::wpaNetworkScan; none along with a reason.
std::pair<Reason, QVector<SystemHelper::WifiInfo>> scanNetworks(wpa_ctrl *ctrl);

/// The quality and connection of SystemHelper::wpaNetworkStatus, also along with a reason.
std::pair<Reason, std::pair<int, bool>> linkStatus(wpa_ctrl *ctrl);

} // namespace aux

#endif
