// SPDX-License-Identifier: MIT
#include "command.h"
#include "network.h"

#include <aux/systeminfo.h>

#include <QJsonObject>

namespace auxctl
{

namespace
{

QString readable(const QJsonObject &clock)
{
    const auto field = [&clock](const char *name) {
        return QStringLiteral("%1").arg(clock[QLatin1String(name)].toInt(), 2, 10,
                                        QLatin1Char('0'));
    };
    return QStringLiteral("%1-%2-%3 %4:%5:%6 UTC")
        .arg(field("year"), field("month"), field("day"), field("hour"), field("minute"),
             field("second"));
}

/// What cannot be found out is empty; with --debug the library says why.
Result info(const Call &)
{
    using aux::SystemInfo;
    const aux::Error error = SystemInfo::loadSerialNumber();
    const QJsonObject clock = SystemInfo::getCurrentDateTimeUTCInfo();
    Result result = record({{"serial", SystemInfo::getSerialNumber()},
                            {"problem", error.hasError() ? error.getMsg() : QString()},
                            {"wifiMac", SystemInfo::getWifiMac()},
                            {"version", SystemInfo::getVersion()},
                            {"bsp", SystemInfo::getBspId()},
                            {"ipv4", SystemInfo::getFirstActiveNetworkIPv4()},
                            {"network", networkInUse()},
                            {"clock", readable(clock)},
                            {"touchscreen", SystemInfo::isTouchscreenDetected()}});
    QJsonObject json = result.json.toObject();
    json["clock"] = clock;
    result.json = json;
    return result;
}

const Registration row{{"info",
                        "",
                        "info",
                        "{serial: text, problem: text, wifiMac: text, version: text, bsp: text, "
                        "ipv4: text, network: " AUXCTL_NETWORK_SHAPE
                        ", clock: {year: number, month: number, day: number, hour: number, "
                        "minute: number, second: number}, touchscreen: bool}",
                        "Show identity, versions, network, clock and touchscreen",
                        {},
                        info}};

} // namespace

} // namespace auxctl
