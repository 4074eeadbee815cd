// SPDX-License-Identifier: MIT
#include "commands.h"
#include "location.h"

namespace auxctl
{

Outcome filesCount(const Invocation &invocation)
{
    return withLocation(invocation.argument(0), [](aux::DirLocation location) {
        auto [error, count] = aux::FsHelper::getNumberOfDirEntries(location);
        if (error.hasError())
            return failed(std::move(error));
        return Outcome{ExitStatus::Done, {}, count, QString::number(count)};
    });
}

} // namespace auxctl
