// SPDX-License-Identifier: MIT
#include "aux/systeminfo.h"

#include <QDateTime>

namespace aux
{

QJsonObject SystemInfo::getCurrentDateTimeUTCInfo()
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QDate date = now.date();
    const QTime time = now.time();
    return {{QStringLiteral("year"), date.year()},     {QStringLiteral("month"), date.month()},
            {QStringLiteral("day"), date.day()},       {QStringLiteral("hour"), time.hour()},
            {QStringLiteral("minute"), time.minute()}, {QStringLiteral("second"), time.second()}};
}

} // namespace aux
