// SPDX-License-Identifier: MIT
#include "command.h"

#include <aux/systemhelper.h>

#include <QDir>
#include <QRegularExpression>
#include <QStorageInfo>

namespace auxctl
{

namespace
{

Result remountReadOnly(const Call &call)
{
    const QString mountPoint = call.argument(0);
    // The library hands it to a shell as it is.
    static const QRegularExpression plainPath(QStringLiteral("\\A/[A-Za-z0-9_./-]*\\z"));
    if (!plainPath.match(mountPoint).hasMatch())
        misuse(QStringLiteral("\"%1\" is no plain absolute path").arg(mountPoint));
    aux::SystemHelper::remountReadOnly(mountPoint);
    const QStorageInfo storage(mountPoint);
    if (!storage.isReadOnly() || storage.rootPath() != QDir(mountPoint).canonicalPath())
        fail(QStringLiteral("%1 is no mount point, or still writable").arg(mountPoint));
    return plainText(mountPoint);
}

const Registration row{{"remount-ro",
                        "MOUNTPOINT",
                        "remounted",
                        "text",
                        "Remount a file system read-only",
                        {},
                        remountReadOnly,
                        "This makes a file system read-only."}};

} // namespace

} // namespace auxctl
