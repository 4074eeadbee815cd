// SPDX-License-Identifier: MIT
#include "commands.h"
#include "help.h"

#include <aux/systemhelper.h>

namespace auxctl
{

namespace
{

Outcome report(aux::Error error, const char *done)
{
    return error.hasError() ? failed(std::move(error)) : plainText(done);
}

} // namespace

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
