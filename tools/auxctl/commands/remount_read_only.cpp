// SPDX-License-Identifier: MIT
#include "commands.h"
#include "help.h"

#include <aux/systemhelper.h>

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
    if (!storage.isValid() || !storage.isReadOnly())
        return failed(QStringLiteral("%1 is not read-only").arg(mountPoint));
    return plainText(mountPoint);
}

} // namespace auxctl
