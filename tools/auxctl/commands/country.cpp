// SPDX-License-Identifier: MIT
#include "commands.h"
#include "help.h"

#include <aux/countrycodes.h>

namespace auxctl
{

Outcome country(const Invocation &invocation)
{
    bool isNumber = false;
    const int id = invocation.argument(0).toInt(&isNumber);
    if (!isNumber)
        return misused(QStringLiteral("\"%1\" is no number").arg(invocation.argument(0)));
    return plainText(aux::CountryCodes::countryCodeFromStateID(id));
}

} // namespace auxctl
