// SPDX-License-Identifier: MIT
#include "command.h"
#include "diagnostics.h"

#include <aux/systemhelper.h>

#include <QDateTime>

namespace auxctl
{

namespace
{

Result setClock(const Call &call)
{
    const QDateTime time = QDateTime::fromString(call.argument(0), Qt::ISODate);
    if (!time.isValid())
        misuse(QStringLiteral("\"%1\" is no time as 2026-01-31T12:00:00Z").arg(call.argument(0)));
    aux::SystemHelper::setSystemTime(time);
    const QStringList reasons = takeDiagnostics(); // the only trace of a failure
    if (!reasons.isEmpty())
        fail(reasons.join(' '));
    return plainText(time.toUTC().toString(Qt::ISODate));
}

const Registration row{{"clock set",
                        "TIME",
                        "time",
                        "text",
                        "Set system and hardware clock, as 2026-01-31T12:00:00Z",
                        {},
                        setClock,
                        "This sets the clock of the terminal."}};

} // namespace

} // namespace auxctl
