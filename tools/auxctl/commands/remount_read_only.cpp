// SPDX-License-Identifier: MIT
#include "commands.h"
#include "help.h"

#include <aux/systemhelper.h>

#include <QDir>
#include <QRegularExpression>
#include <QStorageInfo>

namespace auxctl
{

Outcome remountReadOnly(const Invocation &invocation)
{
    const QString mountPoint = invocation.argument(0);
    // The library hands it to a shell as it is.
    static const QRegularExpression plainPath(QStringLiteral("\\A/[A-Za-z0-9_./-]*\\z"));
    if (!plainPath.match(mountPoint).hasMatch())
        return misused(QStringLiteral("\"%1\" is no plain absolute path").arg(mountPoint));
    aux::SystemHelper::remountReadOnly(mountPoint);
    const QStorageInfo storage(mountPoint);
    if (!storage.isReadOnly() || storage.rootPath() != QDir(mountPoint).canonicalPath())
        return failed(QStringLiteral("%1 is no mount point, or still writable").arg(mountPoint));
    return plainText(mountPoint);
}

} // namespace auxctl
