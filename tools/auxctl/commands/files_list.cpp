// SPDX-License-Identifier: MIT
#include "commands.h"
#include "location.h"

#include <QJsonArray>

namespace auxctl
{

Outcome filesList(const Invocation &invocation)
{
    return withLocation(invocation.argument(0), [](aux::DirLocation location) {
        auto [error, names] = aux::FsHelper::createDirList(location);
        if (error.hasError())
            return failed(std::move(error));
        return Outcome{ExitStatus::Done, {}, QJsonArray::fromStringList(names), names.join('\n')};
    });
}

} // namespace auxctl
