// SPDX-License-Identifier: MIT
#include "system/scantable.h"

#include "error/debugline.h"

#include <QSet>
#include <QStringList>

#include <algorithm>

namespace aux
{

namespace
{

/// The columns of a scan table, separated by tabs.
enum Column { Bssid, Frequency, Level, Flags, Ssid, Columns };

QStringList nonEmptyLines(const QString &text)
{
    return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

int security(const QString &flags)
{
    if (flags.isEmpty())
        return 0;
    return flags.contains(QLatin1String("WPA2-PSK")) ? 2 : 1;
}

/// Why a network is left out; null where it stays.
const char *faultOf(const SystemHelper::WifiInfo &network)
{
    if (network.essid.isEmpty())
        return ": empty ESSID, skipping: ";
    if (network.essid.trimmed().isEmpty())
        return ": ESSID contains all-whitespace, skipping: ";
    if (network.quality == implausibleQuality)
        return ": ESSID has implausible signal level, skipping: ";
    return nullptr;
}

void keepFirstOfEachName(QVector<SystemHelper::WifiInfo> &networks)
{
    QSet<QString> seen;
    const auto isKnown = [&seen](const SystemHelper::WifiInfo &network) {
        const int before = seen.size();
        seen += network.essid;
        return seen.size() == before;
    };
    networks.erase(std::remove_if(networks.begin(), networks.end(), isKnown), networks.end());
}

} // namespace

int wpaInfoLevelToQuality(int level)
{
    debugLine("wpaInfoLevelToQuality", ": level: ", level);
    if (level < -120)
        return implausibleQuality;
    if (level < -80)
        return 0;
    if (level < -65)
        return 1;
    if (level < -50)
        return 2;
    if (level < 0)
        return 3;
    return implausibleQuality;
}

std::optional<SystemHelper::WifiInfo> wpaInfoFromScanResultString(const QString &line)
{
    constexpr const char *operation = "wpaInfoFromScanResultString";
    const QStringList fields = line.split(QLatin1Char('\t'));
    if (fields.size() != Columns) {
        debugLine(operation, ": line parse error, skipping: ", line);
        return {};
    }
    // A level that is no number is 0, which is implausible.
    const SystemHelper::WifiInfo network{fields[Ssid], wpaInfoLevelToQuality(fields[Level].toInt()),
                                         security(fields[Flags])};
    if (const char *fault = faultOf(network)) {
        debugLine(operation, fault, line);
        return {};
    }
    return network;
}

QVector<SystemHelper::WifiInfo> networksFromScanTable(const QString &table)
{
    const QStringList lines = nonEmptyLines(table);
    QVector<SystemHelper::WifiInfo> networks;
    for (int i = 1; i < lines.size(); ++i) { // after the header
        if (const auto network = wpaInfoFromScanResultString(lines[i]))
            networks += *network;
    }
    // Stable: among equals the daemon's own order stays, which is by strength.
    std::stable_sort(networks.begin(), networks.end(),
                     [](const auto &a, const auto &b) { return a.quality > b.quality; });
    keepFirstOfEachName(networks);
    return networks;
}

int qualityFromSignalPoll(const QString &answer)
{
    for (const QString &line : nonEmptyLines(answer)) {
        const QStringList parts = line.split(QLatin1Char('='));
        if (parts.size() >= 2 && parts[0] == QLatin1String("RSSI") && !parts[1].isEmpty())
            return wpaInfoLevelToQuality(parts[1].toInt());
    }
    return 0;
}

} // namespace aux
