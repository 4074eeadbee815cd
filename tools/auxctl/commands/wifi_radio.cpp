// SPDX-License-Identifier: MIT
#include "commands.h"
#include "diagnostics.h"

#include <aux/systemhelper.h>

#include <QRegularExpression>

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
        const auto found = SystemHelper::wpaNetworkScan(control);
        const QStringList reasons =
            takeDiagnostics().filter(QRegularExpression("^wpaNetworkScan "));
        if (!reasons.isEmpty()) // the only trace of a failure
            return failed(reasons.join(' '));
        for (const SystemHelper::WifiInfo &network : found)
            networks += {{"quality", network.quality},
                         {"security", network.security},
                         {"essid", network.essid}};
        Outcome outcome = table(networks);
        if (networks.isEmpty())
            outcome.text = "no network is known yet; the scan goes on, ask again";
        return outcome;
    });
}

Outcome wifiStatus(const Invocation &)
{
    return withSupplicant([](wpa_ctrl *control) {
        const auto [quality, isConnected] = SystemHelper::wpaNetworkStatus(control);
        const QStringList reasons =
            takeDiagnostics().filter(QRegularExpression("^wpaNetworkStatus "));
        if (!reasons.isEmpty())
            return failed(reasons.join(' '));
        return record({{"connected", isConnected}, {"quality", quality}});
    });
}

} // namespace auxctl
