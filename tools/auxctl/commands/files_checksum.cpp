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
    return withInput(invocation.argument(0), [&](const QString &path) -> Outcome {
        const Progress progress(path);
        auto [error, checksum] = aux::FsHelper::generateChecksum(path);
        return error.hasError() ? failed(std::move(error)) : plainText(checksum);
    });
}

} // namespace auxctl
