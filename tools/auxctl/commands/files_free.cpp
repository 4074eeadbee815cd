// SPDX-License-Identifier: MIT
#include "command.h"
#include "location.h"

namespace auxctl
{

namespace
{

/// "64M" as bytes; K, M and G are powers of 1024.
qint64 bytesFromText(const QString &text)
{
    static const QString units = QStringLiteral("KMG");
    const int unit = text.isEmpty() ? -1 : units.indexOf(text.right(1).toUpper());
    bool isNumber = false;
    const qint64 count = text.left(text.size() - (unit < 0 ? 0 : 1)).toLongLong(&isNumber);
    const int shift = 10 * (unit + 1);
    if (!isNumber || count < 0 || count > (std::numeric_limits<qint64>::max() >> shift))
        misuse(QStringLiteral("\"%1\" is no size").arg(text));
    return count << shift;
}

Result isFree(const Call &call)
{
    const aux::DirLocation location = locationFromName(call.argument(0));
    const qint64 bytes = bytesFromText(call.argument(1));
    checked(aux::FsHelper::createDirList(location));
    const bool isFree = aux::FsHelper::checkFreeSpace(location, bytes);
    return answered(isFree, {isFree, isFree ? "free" : "not free"});
}

const Registration row{{"files free",
                        "LOCATION BYTES",
                        "free",
                        "bool",
                        "Check for free space; BYTES may end in K, M or G",
                        {},
                        isFree}};

} // namespace

} // namespace auxctl
