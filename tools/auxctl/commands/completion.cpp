// SPDX-License-Identifier: MIT
#include "commands.h"
#include "help.h"

namespace auxctl
{

Outcome completion(const Invocation &)
{
    return plainText(bashCompletion());
}

} // namespace auxctl
