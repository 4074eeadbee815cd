// SPDX-License-Identifier: MIT
#include "commands.h"
#include "location.h"

#include <QFileInfo>

namespace auxctl
{

namespace
{

Outcome move(aux::DirLocation from, aux::DirLocation to, const Invocation &invocation)
{
    const QString name = invocation.argument(2);
    const QString newName = invocation.value("name");
    aux::Error error = aux::FsHelper::fileMove(from, to, name, invocation.value("checksum"),
                                               invocation.isSet("checksum"), newName);
    if (error.hasError())
        return failed(std::move(error));
    const QString moved = QFileInfo(newName.isEmpty() ? name : newName).fileName();
    return record({{"path", aux::FsHelper::createPathName(to, moved)}});
}

} // namespace

Outcome filesMove(const Invocation &invocation)
{
    return withLocation(invocation.argument(0), [&invocation](aux::DirLocation from) {
        return withLocation(invocation.argument(1),
                            [&](aux::DirLocation to) { return move(from, to, invocation); });
    });
}

} // namespace auxctl
