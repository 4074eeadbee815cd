// SPDX-License-Identifier: MIT
#include "config/replacement.h"
#include "config/ownership.h"

#include <QDateTime>
#include <QFile>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace aux
{

namespace
{

using Milliseconds = qint64;

Milliseconds timeOf(const struct stat &status)
{
    return status.st_mtim.tv_sec * 1000LL + status.st_mtim.tv_nsec / 1000000;
}

Milliseconds timeOf(int file)
{
    struct stat status {
    };
    ::fstat(file, &status);
    return timeOf(status);
}

void setTime(int file, Milliseconds time)
{
    struct timespec times[2]{};
    times[0].tv_nsec = UTIME_OMIT;
    times[1].tv_sec = time / 1000;
    times[1].tv_nsec = time % 1000 * 1000000;
    ::futimens(file, times);
}

/// File systems keep milliseconds, whole seconds or every other second, and their clock may tick
/// slower than that. The last attempt is for one at the end of the times it knows.
void makeLaterThan(Milliseconds old, int file)
{
    const Milliseconds now = QDateTime::currentMSecsSinceEpoch();
    for (const Milliseconds time : {std::max(now, old + 1), old + 1000, old + 2000, now}) {
        if (timeOf(file) > old)
            return;
        setTime(file, time);
    }
}

bool isWhole(QSaveFile &file, const QByteArray &text)
{
    return file.write(text) == text.size() && file.flush();
}

} // namespace

Reason writeReplacement(QSaveFile &file, const QByteArray &text)
{
    struct stat old {
    };
    const bool isNew = ::stat(QFile::encodeName(file.fileName()).constData(), &old) != 0;
    if (isNew)
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    giveToOwnerOf(file.fileName(), file.handle());
    QString error;
    if (!isWhole(file, text))
        error = file.errorString();
    else if (::fsync(file.handle()) != 0)
        error = qt_error_string(errno);
    if (!isNew)
        makeLaterThan(timeOf(old), file.handle()); // after the last byte, which sets the time too
    if (error.isNull())
        return {};
    file.cancelWriting();
    return reason::cannotWrite.because(file.fileName(), error);
}

} // namespace aux
