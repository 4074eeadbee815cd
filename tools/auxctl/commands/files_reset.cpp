// SPDX-License-Identifier: MIT
#include "commands.h"

#include <aux/fshelper.h>

namespace auxctl
{

Outcome filesReset(const Invocation &)
{
    aux::Error error = aux::FsHelper::removeEntireDataDir();
    return error.hasError() ? failed(std::move(error)) : Outcome{ExitStatus::Done, {}, true, {}};
}

} // namespace auxctl
