// SPDX-License-Identifier: MIT
#include "commands.h"
#include "location.h"

#include <optional>

namespace auxctl
{

namespace
{

/// "64M" as bytes; K, M and G are powers of 1024.
std::optional<qint64> bytesFromText(QString text)
{
    static const QString units = QStringLiteral("KMG");
    const int unit = text.isEmpty() ? -1 : units.indexOf(text.right(1).toUpper());
    if (unit >= 0)
        text.chop(1);
    bool isNumber = false;
    const qint64 count = text.toLongLong(&isNumber);
    const int shift = 10 * (unit + 1);
    if (!isNumber || count < 0 || count > (std::numeric_limits<qint64>::max() >> shift))
        return std::nullopt;
    return count << shift;
}

} // namespace

Outcome filesFree(const Invocation &invocation)
{
    return withLocation(invocation.argument(0), [&invocation](aux::DirLocation location) {
        const auto bytes = bytesFromText(invocation.argument(1));
        if (!bytes)
            return misused(QStringLiteral("\"%1\" is no size").arg(invocation.argument(1)));
        aux::Error error = aux::FsHelper::createDirList(location).first;
        if (error.hasError())
            return failed(std::move(error));
        const bool isFree = aux::FsHelper::checkFreeSpace(location, *bytes);
        return answered(isFree, {ExitStatus::Done, {}, isFree, isFree ? "free" : "not free"});
    });
}

} // namespace auxctl
