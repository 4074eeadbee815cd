// SPDX-License-Identifier: MIT
#include "command.h"
#include "fs/checksum.h"
#include "fs/fileidentity.h"
#include "location.h"
#include "progress.h"

#include <QFileInfo>

namespace auxctl
{

namespace
{

/// Checksums are written in small letters.
QString checksumFromText(const QString &text)
{
    return text.toLower();
}

constexpr ValueOption<QString> checksumOption{
    "checksum", "SHA256", "Move only a file with this checksum", checksumFromText};
constexpr ValueOption<QString> newNameOption{"name", "NAME", "Use this file name", anyText};

/// To the library a file of the destination's name is a duplicate, so that the source goes. It must
/// be one.
void checkDuplicate(const QString &source, const QString &destination)
{
    if (!QFileInfo(source).isFile() || !QFileInfo(destination).isFile() ||
        aux::isSameFile(source, destination))
        return;
    const Progress progress(source, QFileInfo(source).size() + QFileInfo(destination).size());
    if (checked(aux::digestOf(source)).raw() != checked(aux::digestOf(destination)).raw())
        fail(QStringLiteral("%1 is another file than %2, both are kept").arg(destination, source));
}

Result move(const Call &call)
{
    const aux::DirLocation from = locationFromName(call.argument(0));
    const aux::DirLocation to = locationFromName(call.argument(1));
    const QString name = call.argument(2);
    const QString newName = call.value(newNameOption).value_or(QString());
    const auto checksum = call.value(checksumOption);
    const QString moved = QFileInfo(newName.isEmpty() ? name : newName).fileName();
    const QString path = aux::FsHelper::createPathName(to, moved);
    const QString source = aux::FsHelper::createPathName(from, QFileInfo(name).fileName());
    checkDuplicate(source, path);
    const Progress progress(source, QFileInfo(source).size());
    checkOn(source, "not moved",
            aux::FsHelper::fileMove(from, to, name, checksum.value_or(QString()),
                                    checksum.has_value(), newName));
    return record({{"path", path}});
}

const Registration row{{"files move",
                        "FROM TO FILE",
                        "moved",
                        "{path: text}",
                        "Move a file between two locations",
                        {&checksumOption, &newNameOption},
                        move}};

} // namespace

} // namespace auxctl
