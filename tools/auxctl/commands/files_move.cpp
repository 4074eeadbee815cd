// SPDX-License-Identifier: MIT
#include "command.h"
#include "location.h"

#include <QFileInfo>

namespace auxctl
{

namespace
{

constexpr ValueOption<QString> checksumOption{"checksum", "SHA256",
                                              "Move only a file with this checksum", anyText};
constexpr ValueOption<QString> newNameOption{"name", "NAME", "Use this file name", anyText};

Result move(const Call &call)
{
    const aux::DirLocation from = locationFromName(call.argument(0));
    const aux::DirLocation to = locationFromName(call.argument(1));
    const QString name = call.argument(2);
    const QString newName = call.value(newNameOption).value_or(QString());
    const auto checksum = call.value(checksumOption);
    check(aux::FsHelper::fileMove(from, to, name, checksum.value_or(QString()),
                                  checksum.has_value(), newName));
    const QString moved = QFileInfo(newName.isEmpty() ? name : newName).fileName();
    return record({{"path", aux::FsHelper::createPathName(to, moved)}});
}

const Registration row{{"files move",
                        "FROM TO FILE",
                        "moved",
                        "{path}",
                        "Move a file between two locations",
                        {&checksumOption, &newNameOption},
                        move}};

} // namespace

} // namespace auxctl
