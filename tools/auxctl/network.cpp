// SPDX-License-Identifier: MIT
#include "network.h"

#include <aux/systeminfo.h>

#include <QJsonArray>

namespace auxctl
{

QJsonObject networkInUse()
{
    const QJsonObject info = aux::SystemInfo::getNetworkInfo(QStringLiteral("eth0"));
    QJsonArray interfaces;
    for (auto member = info.begin(); member != info.end(); ++member) {
        const QJsonObject interface = member->toObject();
        if (interface.isEmpty()) // there is none of the kind, or this is none
            continue;
        QJsonArray addresses;
        for (const auto &address : interface["ip"].toArray())
            addresses += address.toObject()["ip"];
        interfaces += QJsonObject{{"kind", member.key()},
                                  {"interface", interface["interface"]},
                                  {"mac", interface["mac"]},
                                  {"addresses", addresses}};
    }
    return {{"active", info["active"]}, {"interfaces", interfaces}};
}

} // namespace auxctl
