// SPDX-License-Identifier: MIT
#include "commands.h"
#include "progress.h"
#include "streams.h"

#include <aux/fshelper.h>

namespace auxctl
{

Outcome filesVerify(const Invocation &invocation)
{
    return withInput(invocation.argument(0), [&](const QString &path) -> Outcome {
        const Progress progress(path);
        const bool isValid = aux::FsHelper::validateChecksum(path, invocation.argument(1));
        return answered(isValid, {ExitStatus::Done, {}, isValid, isValid ? "valid" : "not valid"});
    });
}

} // namespace auxctl
