// SPDX-License-Identifier: MIT
#include "diagnostics.h"

#include <QMutex>

namespace auxctl
{

namespace
{

struct Lines {
    QMutex mutex;
    QStringList list;
};

Lines &lines()
{
    static Lines collected;
    return collected;
}

void collect(QtMsgType, const QMessageLogContext &, const QString &message)
{
    const QMutexLocker lock(&lines().mutex);
    lines().list += message.trimmed();
}

} // namespace

void collectDiagnostics()
{
    qInstallMessageHandler(collect);
}

QStringList takeDiagnostics()
{
    const QMutexLocker lock(&lines().mutex);
    return std::exchange(lines().list, {});
}

} // namespace auxctl
