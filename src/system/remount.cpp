// SPDX-License-Identifier: MIT
#include "aux/systemhelper.h"
#include "error/debugline.h"
#include "process/shell.h"

namespace aux
{

void SystemHelper::remountReadOnly(const QString &mountPoint)
{
    if (mountPoint.isEmpty())
        return;
    // Deliberately not quoted.
    const QString command = QStringLiteral("/bin/mount -o remount,ro ") + mountPoint;
    debugLine("remountReadOnly", ": trying: ", command);
    runInShell(command);
}

} // namespace aux
