// SPDX-License-Identifier: MIT
#include "config/settingslock.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>
#include <QThread>

#include <cerrno>
#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

// QSettings' lock is a file that its holder creates, takes with flock(), and fills with process
// number, program, host, machine and boot, one line each. Other accounts may flock() it too, so
// that this alone says nothing.

namespace aux
{

namespace
{

constexpr qint64 fillingTime = 2000;          // ms
constexpr qint64 doubtLimit = 3000;           // ms
constexpr qint64 patienceWithRunning = 30000; // ms
constexpr unsigned long retryInterval = 20;   // ms

constexpr int processLine = 0;
constexpr int programLine = 1;
constexpr int bootLine = 4;

enum class State {
    Absent,
    Abandoned,
    Doubtful, ///< not yet filled perhaps, not readable, or naming a process that has not taken it
    Held,
};

using Status = struct stat;

bool isBeingFilled(const Status &status)
{
    const qint64 made = status.st_mtim.tv_sec * 1000LL + status.st_mtim.tv_nsec / 1000000;
    const qint64 age = QDateTime::currentMSecsSinceEpoch() - made;
    return status.st_size == 0 && qAbs(age) < fillingTime; // negative: the clock was set back
}

/// False where the process runs another program, so that it only has the number of one that ended.
bool mayRun(pid_t process, const QByteArray &program)
{
    QString running =
        QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(process))).fileName();
    running.remove(QStringLiteral(" (deleted)")); // updated meanwhile
    return running.isEmpty() || program.isEmpty() || running == QFile::decodeName(program);
}

bool namesRunningProcess(const QList<QByteArray> &lines)
{
    const QByteArray boot = lines.value(bootLine);
    if (!boot.isEmpty() && boot != QSysInfo::bootUniqueId())
        return false; // its number belongs to another process now
    const pid_t process = lines.value(processLine).toInt();
    return process > 0 && (::kill(process, 0) == 0 || errno == EPERM) &&
           mayRun(process, lines.value(programLine));
}

State stateOfFile(int descriptor)
{
    Status status{};
    QFile file;
    if (::fstat(descriptor, &status) != 0 || isBeingFilled(status) ||
        !file.open(descriptor, QIODevice::ReadOnly))
        return State::Doubtful;
    if (!namesRunningProcess(file.readAll().split('\n')))
        return State::Abandoned;
    return ::flock(descriptor, LOCK_SH | LOCK_NB) == 0 ? State::Doubtful : State::Held;
}

State stateOf(const QByteArray &lock, Status &status)
{
    if (::lstat(lock.constData(), &status) != 0)
        return State::Absent;
    if (!S_ISREG(status.st_mode))
        return State::Abandoned;
    const int file = ::open(lock.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return errno == ENOENT ? State::Absent : State::Doubtful;
    const State state = stateOfFile(file);
    ::close(file);
    return state;
}

/// Whether it is still the same lock; a number may be that of a file removed just now.
bool areSame(const Status &before, const Status &now)
{
    return before.st_ino == now.st_ino && before.st_ctim.tv_sec == now.st_ctim.tv_sec &&
           before.st_ctim.tv_nsec == now.st_ctim.tv_nsec;
}

QString lockOf(const QString &settingsFile)
{
    return settingsFile + QStringLiteral(".lock");
}

} // namespace

void removeAbandonedLock(const QString &settingsFile)
{
    const QByteArray lock = QFile::encodeName(lockOf(settingsFile));
    Status status{};
    if (stateOf(lock, status) == State::Abandoned)
        std::remove(lock.constData());
}

SettingsLock::SettingsLock(const QString &settingsFile) : m_lock(lockOf(settingsFile))
{
    const QByteArray lock = QFile::encodeName(lockOf(settingsFile));
    m_lock.setStaleLockTime(0);
    QElapsedTimer waited;
    waited.start();
    QElapsedTimer waitedForThis;
    Status status{};
    for (;; QThread::msleep(retryInterval)) {
        const Status before = status;
        State state = stateOf(lock, status);
        if (!areSame(before, status))
            waitedForThis.start();
        if (state == State::Doubtful && waitedForThis.hasExpired(doubtLimit))
            state = State::Abandoned;
        if (state == State::Abandoned && std::remove(lock.constData()) != 0)
            return; // a directory that is not empty, or one that this account cannot write to
        const bool isGone = state == State::Absent || state == State::Abandoned;
        if (!isGone && waited.hasExpired(patienceWithRunning))
            return;
        if (isGone && (m_lock.tryLock(0) || m_lock.error() != QLockFile::LockFailedError))
            return;
    }
}

} // namespace aux
