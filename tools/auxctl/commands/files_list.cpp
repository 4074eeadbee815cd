// SPDX-License-Identifier: MIT
#include "commands.h"
#include "location.h"

#include <QJsonArray>

#include <algorithm>

namespace auxctl
{

Outcome filesList(const Invocation &invocation)
{
    return withLocation(invocation.argument(0), [](aux::DirLocation location) {
        auto [error, names] = aux::FsHelper::createDirList(location);
        if (error.hasError())
            return failed(std::move(error));
        const QJsonArray json = QJsonArray::fromStringList(names);
        std::transform(names.begin(), names.end(), names.begin(), printable);
        return Outcome{ExitStatus::Done, {}, json, names.join('\n')};
    });
}

} // namespace auxctl
