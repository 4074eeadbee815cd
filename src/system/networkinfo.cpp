// SPDX-License-Identifier: MIT
#include "aux/systeminfo.h"
#include "system/interfacelist.h"

namespace aux
{

QJsonObject SystemInfo::getNetworkInfo(const QString &iface)
{
    return networkInfo(systemInterfaces(), iface);
}

const QString &SystemInfo::getFirstActiveNetworkIPv4()
{
    thread_local QString address;
    address = activeIPv4(systemInterfaces());
    return address;
}

} // namespace aux
