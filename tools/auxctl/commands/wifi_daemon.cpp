// SPDX-License-Identifier: MIT
#include "commands.h"
#include "help.h"

#include <aux/systemhelper.h>

namespace auxctl
{

Outcome wifiStart(const Invocation &)
{
    return report(aux::SystemHelper::wpaSupplicantStart(), "started");
}

Outcome wifiStop(const Invocation &)
{
    return report(aux::SystemHelper::wpaSupplicantStop(), "stopped");
}

Outcome wifiKill(const Invocation &)
{
    return report(aux::SystemHelper::wpaSupplicantForceKill(), "killed");
}

} // namespace auxctl
