// SPDX-License-Identifier: MIT
#include "aux/systemhelper.h"
#include "error/debugline.h"
#include "system/scantable.h"

#include <array>
#include <cstddef> // wpa_ctrl.h uses size_t and includes nothing
#include <optional>

#include <wpa_ctrl.h>

namespace aux
{

namespace
{

constexpr size_t bufferSize = 4096;

constexpr const char *noHandle = ": wpa control handle is NULL";
constexpr const char *requestFailed = ": scan request failed";

/// The daemon's answer up to its first zero byte; nothing where it does not answer.
std::optional<QString> request(wpa_ctrl *ctrl, const char *command)
{
    std::array<char, bufferSize> answer{};
    size_t length = answer.size() - 1;
    if (wpa_ctrl_request(ctrl, command, qstrlen(command), answer.data(), &length, nullptr) < 0)
        return {};
    answer.at(length) = '\0';
    return QString::fromLatin1(answer.data());
}

} // namespace

QVector<SystemHelper::WifiInfo> SystemHelper::wpaNetworkScan(wpa_ctrl *ctrl)
{
    constexpr const char *operation = "wpaNetworkScan";
    if (ctrl == nullptr) {
        debugLine(operation, noHandle);
        return {};
    }
    if (!request(ctrl, "SCAN")) {
        debugLine(operation, requestFailed);
        return {};
    }
    const auto table = request(ctrl, "SCAN_RESULTS");
    if (!table) {
        debugLine(operation, ": collecting scan results failed");
        return {};
    }
    if (table->isEmpty()) {
        debugLine(operation, ": empty scan result");
        return {};
    }
    return networksFromScanTable(*table);
}

std::pair<int, bool> SystemHelper::wpaNetworkStatus(wpa_ctrl *ctrl)
{
    constexpr const char *operation = "wpaNetworkStatus";
    if (ctrl == nullptr) {
        debugLine(operation, noHandle);
        return {0, false};
    }
    if (!ifaceIsConnected(QStringLiteral("wlan0")))
        return {0, false};
    const auto answer = request(ctrl, "SIGNAL_POLL");
    if (!answer) {
        debugLine(operation, requestFailed); // deliberately the scan's words
        return {0, true};
    }
    return {qualityFromSignalPoll(*answer), true};
}

} // namespace aux
