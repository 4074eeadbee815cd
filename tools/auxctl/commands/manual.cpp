// SPDX-License-Identifier: MIT
#include "commands.h"
#include "help.h"

namespace auxctl
{

Outcome manual(const Invocation &)
{
    return plainText(manualPage());
}

} // namespace auxctl
