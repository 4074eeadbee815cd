// SPDX-License-Identifier: MIT
#include "commands.h"
#include "help.h"
#include "location.h"

namespace auxctl
{

Outcome filesName(const Invocation &invocation)
{
    return withLocation(invocation.argument(0), [](aux::DirLocation location) {
        return plainText(aux::FsHelper::createUniqueFileName(location));
    });
}

} // namespace auxctl
