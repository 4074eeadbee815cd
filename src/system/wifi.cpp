// SPDX-License-Identifier: MIT
#include "system/wifi.h"
#include "error/debugline.h"
#include "system/scantable.h"
#include "system/supplicantrequest.h"

namespace aux
{

namespace
{

const Reason noHandle = QStringLiteral("wpa control handle is NULL");
const Reason requestFailed = QStringLiteral("scan request failed");

/// The daemon's answer up to its first zero byte; nothing where it does not answer.
std::optional<QString> request(wpa_ctrl *ctrl, const char *command)
{
    const auto answer = requestSupplicant(ctrl, command);
    if (!answer)
        return {};
    return QString::fromLatin1(answer->constData());
}

/// Writes the reason as a debug line, if there is one, and returns the answer.
template <typename Answer>
Answer withDebugLine(const char *operation, std::pair<Reason, Answer> result)
{
    if (!result.first.isNone())
        debugLine(operation, qUtf8Printable(QStringLiteral(": ") + result.first.text()));
    return std::move(result.second);
}

} // namespace

std::pair<Reason, QVector<SystemHelper::WifiInfo>> scanNetworks(wpa_ctrl *ctrl)
{
    if (ctrl == nullptr)
        return {noHandle, {}};
    if (!request(ctrl, "SCAN"))
        return {requestFailed, {}};
    const auto table = request(ctrl, "SCAN_RESULTS");
    if (!table)
        return {QStringLiteral("collecting scan results failed"), {}};
    if (table->isEmpty())
        return {QStringLiteral("empty scan result"), {}};
    return {Reason(), networksFromScanTable(*table)};
}

std::pair<Reason, std::pair<int, bool>> linkStatus(wpa_ctrl *ctrl)
{
    if (ctrl == nullptr)
        return {noHandle, {0, false}};
    if (!SystemHelper::ifaceIsConnected(QStringLiteral("wlan0")))
        return {Reason(), {0, false}};
    const auto answer = request(ctrl, "SIGNAL_POLL");
    if (!answer)
        return {requestFailed, {0, true}}; // deliberately the scan's words
    return {Reason(), {qualityFromSignalPoll(*answer), true}};
}

QVector<SystemHelper::WifiInfo> SystemHelper::wpaNetworkScan(wpa_ctrl *ctrl)
{
    return withDebugLine("wpaNetworkScan", scanNetworks(ctrl));
}

std::pair<int, bool> SystemHelper::wpaNetworkStatus(wpa_ctrl *ctrl)
{
    return withDebugLine("wpaNetworkStatus", linkStatus(ctrl));
}

} // namespace aux
