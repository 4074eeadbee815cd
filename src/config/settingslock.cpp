// SPDX-License-Identifier: MIT
#include "config/settingslock.h"

#include <QDateTime>
#include <QFile>
#include <QSysInfo>
#include <QThread>

#include <cerrno>
#include <csignal>

#include <sys/file.h>
#include <sys/stat.h>

// A lock is a file that its holder creates, takes with flock(), and fills with process number,
// program, host, machine and boot, one line each. The kernel gives it free when the holder dies.

namespace aux
{

namespace
{

constexpr qint64 fillingTime = 2000;       // ms
constexpr unsigned long pollInterval = 20; // ms

constexpr int processLine = 0;
constexpr int bootLine = 4;

using Status = struct stat;

Status statusOf(const QFile &lock)
{
    Status status{};
    ::fstat(lock.handle(), &status);
    return status;
}

/// Not yet taken perhaps: taking it now would be in the way of its holder.
bool isBeingFilled(const QFile &lock)
{
    const Status status = statusOf(lock);
    const qint64 made = status.st_mtim.tv_sec * 1000LL + status.st_mtim.tv_nsec / 1000000;
    const qint64 age = QDateTime::currentMSecsSinceEpoch() - made;
    return status.st_size == 0 && qAbs(age) < fillingTime; // negative: the clock was set back
}

bool isHeld(const QFile &lock)
{
    return ::flock(lock.handle(), LOCK_EX | LOCK_NB) != 0;
}

/// Whether it was removed since it was opened; its path may be that of another lock now.
bool isGone(const QFile &lock)
{
    return statusOf(lock).st_nlink == 0;
}

bool namesRunningProcess(const QList<QByteArray> &lines)
{
    const QByteArray boot = lines.value(bootLine);
    if (!boot.isEmpty() && boot != QSysInfo::bootUniqueId())
        return false; // its number belongs to another process now
    const pid_t process = lines.value(processLine).toInt();
    return process > 0 && (::kill(process, 0) == 0 || errno == EPERM);
}

} // namespace

void removeAbandonedLock(const QString &settingsFile)
{
    QFile lock(settingsFile + QStringLiteral(".lock"));
    while (lock.open(QIODevice::ReadOnly) && isBeingFilled(lock)) {
        lock.close();
        QThread::msleep(pollInterval);
    }
    if (!lock.isOpen() || isHeld(lock) || isGone(lock))
        return;
    if (!namesRunningProcess(lock.readAll().split('\n')))
        lock.remove();
}

} // namespace aux
