// SPDX-License-Identifier: MIT
#include "commands.h"
#include "diagnostics.h"
#include "help.h"

#include <aux/systemhelper.h>

#include <QDateTime>

namespace auxctl
{

Outcome clockSet(const Invocation &invocation)
{
    const QDateTime time = QDateTime::fromString(invocation.argument(0), Qt::ISODate);
    if (!time.isValid())
        return misused(QStringLiteral("\"%1\" is no time as 2026-01-31T12:00:00Z")
                           .arg(invocation.argument(0)));
    aux::SystemHelper::setSystemTime(time);
    const QStringList reasons = takeDiagnostics(); // the only trace of a failure
    return reasons.isEmpty() ? plainText(time.toUTC().toString(Qt::ISODate))
                             : failed(reasons.join(' '));
}

} // namespace auxctl
