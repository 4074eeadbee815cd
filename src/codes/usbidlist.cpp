// SPDX-License-Identifier: MIT
#include "aux/datahelper.h"
#include "error/failure.h"

namespace aux
{

namespace
{

constexpr QLatin1Char entrySeparator(';');
constexpr QLatin1Char idSeparator(':');
const QString hexPrefix = QStringLiteral("0x");

QString withoutPrefix(const QString &id)
{
    return id.startsWith(hexPrefix) ? id.mid(hexPrefix.size()) : id;
}

} // namespace

Error DataHelper::vIdpIdListFromString(const QString &text, QStringList &list)
{
    QStringList result;
    const QStringList entries = text.isEmpty() ? QStringList() : text.split(entrySeparator);
    for (const QString &entry : entries) {
        const QStringList ids = entry.split(idSeparator);
        if (ids.size() != 2)
            return failure(ErrorId::InvalidContent,
                           QStringLiteral("USB VID:PID list syntax error"));
        result += withoutPrefix(ids[0]) + idSeparator + withoutPrefix(ids[1]);
    }
    list = std::move(result);
    return {};
}

} // namespace aux
