// SPDX-License-Identifier: MIT
#include "config/writersturn.h"
#include "config/ownership.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// A writer stands in the queue by locking one byte of the file behind all bytes that others have
// locked, and has its turn when none before that is locked any more. flock() alone, and a lock that
// is polled, would be given to whoever asks at the right moment, most often to the one who has just
// given it up.

namespace aux
{

namespace
{

constexpr off_t door = 0; // locked while a writer takes its place
constexpr off_t firstPlace = 1;

/// These belong to the open file, so that the threads of a process exclude each other too.
int lockBytes(int queue, short type, off_t begin, off_t length)
{
    struct flock lock {
    };
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = begin;
    lock.l_len = length;
    while (::fcntl(queue, F_OFD_SETLKW, &lock) != 0) {
        if (errno != EINTR)
            return errno;
    }
    return 0;
}

off_t placeBehindAll(int queue)
{
    off_t place = firstPlace;
    for (;;) {
        struct flock found {
        };
        found.l_type = F_WRLCK;
        found.l_whence = SEEK_SET;
        found.l_start = place;
        if (::fcntl(queue, F_OFD_GETLK, &found) != 0 || found.l_type == F_UNLCK)
            return place;
        place = found.l_start + found.l_len;
    }
}

int waitForTurn(int queue)
{
    int error = lockBytes(queue, F_WRLCK, door, 1);
    if (error != 0)
        return error; // a file system without locks
    const off_t place = placeBehindAll(queue);
    error = lockBytes(queue, F_WRLCK, place, 1);
    lockBytes(queue, F_UNLCK, door, 1);
    if (error == 0 && place > firstPlace)
        error = lockBytes(queue, F_RDLCK, firstPlace, place - firstPlace);
    return error;
}

int openQueue(const QString &settingsFile)
{
    const QFileInfo info(settingsFile);
    const QByteArray path =
        QFile::encodeName(info.path() + QStringLiteral("/.%1.turn").arg(info.fileName()));
    struct stat status {
    };
    if (::lstat(path.constData(), &status) == 0 && !S_ISREG(status.st_mode))
        std::remove(path.constData());
    const int queue =
        ::open(path.constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600);
    if (queue >= 0)
        giveToOwnerOf(settingsFile, queue);
    return queue;
}

} // namespace

WritersTurn::WritersTurn(const QString &settingsFile) : m_queue(openQueue(settingsFile))
{
    m_error = m_queue < 0 ? errno : waitForTurn(m_queue);
}

WritersTurn::~WritersTurn()
{
    if (m_queue < 0)
        return;
    lockBytes(m_queue, F_UNLCK, door, 0); // a process forked meanwhile has the open file too
    ::close(m_queue);
}

} // namespace aux
