// SPDX-License-Identifier: MIT
#include "commands.h"

#include <aux/systemhelper.h>

namespace auxctl
{

Outcome link(const Invocation &invocation)
{
    const QString iface = invocation.argument(0);
    if (iface.contains('/'))
        return misused(QStringLiteral("\"%1\" is no interface").arg(iface));
    const bool isUp = iface.isEmpty() ? aux::SystemHelper::lanNetworkStatus()
                                      : aux::SystemHelper::ifaceIsConnected(iface);
    return answered(isUp, {ExitStatus::Done, {}, isUp, isUp ? "up" : "down"});
}

} // namespace auxctl
