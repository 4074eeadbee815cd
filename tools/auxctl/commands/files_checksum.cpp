// SPDX-License-Identifier: MIT
#include "commands.h"
#include "help.h"
#include "progress.h"
#include "streams.h"

#include <aux/fshelper.h>

namespace auxctl
{

Outcome filesChecksum(const Invocation &invocation)
{
    const InputFile input(invocation.argument(0));
    if (input.error().hasError())
        return failed(input.error());
    const Progress progress(input.path());
    auto [error, checksum] = aux::FsHelper::generateChecksum(input.path());
    return error.hasError() ? failed(std::move(error)) : plainText(checksum);
}

} // namespace auxctl
