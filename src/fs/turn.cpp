// SPDX-License-Identifier: MIT
#include "fs/turn.h"
#include "error/failure.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>

namespace aux
{

namespace
{

constexpr qint64 patience = 5000;         // ms; a turn takes no longer than a file's removal
constexpr unsigned long pollInterval = 1; // ms

Descriptor openDirectory(const QString &path)
{
    return Descriptor(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

/// Sets errno where it fails.
bool lock(const Descriptor &directory)
{
    QElapsedTimer waited;
    waited.start();
    while (::flock(directory.number(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK || waited.hasExpired(patience))
            return false;
        QThread::msleep(pollInterval);
    }
    return true;
}

} // namespace

Turn::Turn(const QString &directory) : m_directory(openDirectory(directory))
{
    if (!m_directory.isOpen() || !lock(m_directory))
        m_cause = causeOf(directory, errno);
}

} // namespace aux
