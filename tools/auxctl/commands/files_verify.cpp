// SPDX-License-Identifier: MIT
#include "commands.h"
#include "progress.h"
#include "streams.h"

#include <aux/fshelper.h>

namespace auxctl
{

Outcome filesVerify(const Invocation &invocation)
{
    const InputFile input(invocation.argument(0));
    if (input.error().hasError())
        return failed(input.error());
    const Progress progress(input.path());
    const bool isValid = aux::FsHelper::validateChecksum(input.path(), invocation.argument(1));
    return answered(isValid, {ExitStatus::Done, {}, isValid, isValid ? "valid" : "not valid"});
}

} // namespace auxctl
