// SPDX-License-Identifier: MIT
#include "commands.h"

#include <aux/systemhelper.h>

#include <functional>

namespace auxctl
{

namespace
{

using aux::SystemHelper;

Outcome withSupplicant(const std::function<Outcome(wpa_ctrl *)> &function)
{
    auto [error, control] = SystemHelper::wpaSupplicantConnect();
    if (error.hasError())
        return failed(std::move(error));
    Outcome outcome = function(control);
    aux::Error closing = SystemHelper::wpaSupplicantDisconnect(control);
    return closing.hasError() ? failed(std::move(closing)) : outcome;
}

} // namespace

Outcome wifiScan(const Invocation &)
{
    return withSupplicant([](wpa_ctrl *control) {
        QVector<Record> networks;
        for (const SystemHelper::WifiInfo &network : SystemHelper::wpaNetworkScan(control))
            networks += {{"quality", network.quality},
                         {"security", network.security},
                         {"essid", network.essid}};
        return table(networks);
    });
}

Outcome wifiStatus(const Invocation &)
{
    return withSupplicant([](wpa_ctrl *control) {
        const auto [quality, isConnected] = SystemHelper::wpaNetworkStatus(control);
        return record({{"connected", isConnected}, {"quality", quality}});
    });
}

} // namespace auxctl
