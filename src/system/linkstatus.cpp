// SPDX-License-Identifier: MIT
#include "aux/systemhelper.h"
#include "error/debugline.h"

#include <QFile>

namespace aux
{

namespace
{

constexpr const char *operation = "ifaceIsConnected";

/// Returns whether what the kernel says in an entry of the interface begins with the given text.
bool entryBeginsWith(const QString &iface, const char *entry, const char *begin,
                     const char *otherwise)
{
    const QString directory = QStringLiteral("/sys/class/net/") + iface;
    QFile file(directory + QLatin1Char('/') + QLatin1String(entry));
    if (!file.exists()) {
        debugLine(operation, ": sysfs entry missing: ", directory);
        return false;
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        debugLine(operation, ": error opening sysfs entry for", iface);
        return false;
    }
    const bool matches = file.readAll().startsWith(begin);
    if (!matches)
        debugLine(operation, iface, otherwise);
    return matches;
}

} // namespace

bool SystemHelper::ifaceIsConnected(const QString &iface)
{
    const bool connected = entryBeginsWith(iface, "carrier", "1", ": no carrier") &&
                           entryBeginsWith(iface, "operstate", "up", ": not up");
    if (connected)
        debugLine(operation, iface, ": carrier and up");
    return connected;
}

bool SystemHelper::lanNetworkStatus()
{
    return ifaceIsConnected(QStringLiteral("eth0"));
}

} // namespace aux
