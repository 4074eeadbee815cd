// SPDX-License-Identifier: MIT
#include "command.h"

#include <aux/systemhelper.h>

namespace auxctl
{

namespace
{

Result link(const Call &call)
{
    const QString iface = call.argument(0);
    if (iface.contains('/'))
        misuse(QStringLiteral("\"%1\" is no interface").arg(iface));
    const bool isUp = iface.isEmpty() ? aux::SystemHelper::lanNetworkStatus()
                                      : aux::SystemHelper::ifaceIsConnected(iface);
    return answered(isUp, {isUp, isUp ? "up" : "down"});
}

const Registration row{{"link",
                        "[IFACE]",
                        "link",
                        "bool",
                        "Check whether a network interface has a link",
                        {&watchOption},
                        link}};

} // namespace

} // namespace auxctl
