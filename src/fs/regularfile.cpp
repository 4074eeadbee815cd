// SPDX-License-Identifier: MIT
#include "fs/regularfile.h"
#include "error/failure.h"
#include "fs/progress.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace aux
{

namespace
{

constexpr mode_t newFileMode = 0666;      // less the umask
constexpr qint64 pieceSize = 64LL * 1024; // how much of a file is in memory at a time

/// Calls again what a signal has interrupted.
template <typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

} // namespace

Descriptor &Descriptor::operator=(Descriptor &&other) noexcept
{
    if (this != &other) {
        close();
        m_number = other.release();
    }
    return *this;
}

int Descriptor::release()
{
    return std::exchange(m_number, -1);
}

bool Descriptor::close()
{
    return !isOpen() || ::close(release()) == 0;
}

bool RegularFile::openForReading()
{
    return open(O_RDONLY);
}

bool RegularFile::openForWriting()
{
    return open(O_WRONLY | O_CREAT);
}

qint64 RegularFile::size() const
{
    struct stat status {
    };
    return fstat(handle(), &status) == 0 ? status.st_size : -1;
}

bool RegularFile::isSameAs(const RegularFile &other) const
{
    struct stat mine {
    };
    struct stat others {
    };
    return fstat(handle(), &mine) == 0 && fstat(other.handle(), &others) == 0 &&
           mine.st_dev == others.st_dev && mine.st_ino == others.st_ino;
}

bool RegularFile::close()
{
    return m_descriptor.close() || failed(errno);
}

std::optional<QByteArray> RegularFile::readUpTo(int maximum)
{
    QByteArray content(maximum, Qt::Uninitialized);
    const qint64 length = read(content.data(), maximum);
    if (length < 0)
        return std::nullopt;
    content.truncate(static_cast<int>(length));
    return content;
}

bool RegularFile::readToEnd(const TakePiece &take)
{
    const qint64 done = readPieces(std::numeric_limits<qint64>::max(), take);
    return done >= 0 && (done >= size() || endsEarly());
}

bool RegularFile::readExactly(qint64 length, const TakePiece &take)
{
    const qint64 done = readPieces(length, take);
    return done >= 0 && (done == length || endsEarly());
}

bool RegularFile::write(const char *data, qint64 size)
{
    while (size > 0) {
        const ssize_t length =
            uninterrupted([&] { return ::write(handle(), data, static_cast<std::size_t>(size)); });
        if (length <= 0)
            return failed(length == 0 ? ENOSPC : errno);
        data += length;
        size -= length;
    }
    return true;
}

bool RegularFile::seek(qint64 offset)
{
    return ::lseek(handle(), offset, SEEK_SET) == offset || failed(errno);
}

bool RegularFile::truncate()
{
    return ::ftruncate(handle(), 0) == 0 || failed(errno);
}

bool RegularFile::open(int flags)
{
    if (m_path.contains(QChar::Null)) // the system would take the name up to there
        return failed(EINVAL);
    // Only with O_NONBLOCK a FIFO is not waited for, only with O_NOCTTY a terminal is left alone.
    m_descriptor = Descriptor(uninterrupted([&] {
        return ::open(QFile::encodeName(m_path).constData(),
                      flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, newFileMode);
    }));
    struct stat status {
    };
    if (m_descriptor.isOpen() && fstat(handle(), &status) != 0)
        m_descriptor.close();
    if (!m_descriptor.isOpen() && errno != ENXIO) // a socket, or a FIFO that nobody reads
        return failed(errno);
    if (m_descriptor.isOpen() && S_ISREG(status.st_mode))
        return true;
    m_descriptor.close();
    return failed(notRegular);
}

/// Reads up to `size` bytes, fewer only at the end of the file; -1 where the medium fails.
qint64 RegularFile::read(char *data, qint64 size)
{
    qint64 done = 0;
    while (done < size) {
        const ssize_t length = uninterrupted(
            [&] { return ::read(handle(), data + done, static_cast<std::size_t>(size - done)); });
        if (length < 0) {
            failed(errno);
            return -1;
        }
        if (length == 0)
            break;
        done += length;
    }
    return done;
}

/// The same without having all of it in memory.
qint64 RegularFile::readPieces(qint64 length, const TakePiece &take)
{
    const qint64 pieceLength = std::min(length, pieceSize);
    QByteArray piece(static_cast<int>(pieceLength), Qt::Uninitialized);
    qint64 done = 0;
    while (done < length) {
        const qint64 got = read(piece.data(), std::min(length - done, pieceLength));
        if (got < 0)
            return -1;
        if (got == 0 || !take(piece.constData(), got))
            break;
        done += got;
        advance(got);
    }
    return done;
}

bool RegularFile::endsEarly()
{
    return failed(QStringLiteral("shorter than its size"));
}

bool RegularFile::failed(const QString &explanation)
{
    m_cause = causeOf(m_path, explanation);
    return false;
}

bool RegularFile::failed(int error)
{
    return failed(qt_error_string(error));
}

} // namespace aux
