// SPDX-License-Identifier: MIT
#include "wifi.h"

using aux::SystemHelper;

namespace
{

std::pair<aux::Error, wpa_ctrl *> connectToDaemon()
{
    auto connection = SystemHelper::wpaSupplicantConnect();
    if (!connection.first.hasError())
        return connection;
    const aux::Error error = SystemHelper::wpaSupplicantStart();
    if (error.hasError())
        return {error, nullptr};
    return SystemHelper::wpaSupplicantConnect();
}

} // namespace

std::pair<aux::Error, QVector<SystemHelper::WifiInfo>> networksInReach()
{
    const auto [error, daemon] = connectToDaemon();
    if (error.hasError())
        return {error, {}};
    const auto networks = SystemHelper::wpaNetworkScan(daemon);
    return {SystemHelper::wpaSupplicantDisconnect(daemon), networks};
}
