// SPDX-License-Identifier: MIT
#include "fs/storage.h"
#include "fs/fileidentity.h"
#include "fs/regularfile.h"
#include "fs/turn.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace aux
{

namespace
{

Descriptor openToSync(const QString &path, int flags)
{
    return Descriptor(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | flags));
}

} // namespace

bool syncDirectory(const QString &path)
{
    const Descriptor directory = openToSync(path, O_DIRECTORY);
    return directory.isOpen() && ::fsync(directory.number()) == 0;
}

bool syncFileSystem(const QString &path)
{
    Descriptor opened = openToSync(QFileInfo(path).path(), O_DIRECTORY);
    if (!opened.isOpen()) // a directory may be searched, though not read
        opened = openToSync(path, O_NONBLOCK);
    return opened.isOpen() && ::syncfs(opened.number()) == 0;
}

int renameWithoutReplacing(const QString &from, const QString &to)
{
    if (to.contains(QChar::Null))
        return EINVAL;
    const QByteArray source = QFile::encodeName(from);
    const QByteArray destination = QFile::encodeName(to);
    if (renameat2(AT_FDCWD, source.constData(), AT_FDCWD, destination.constData(),
                  RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL) // this file system can rename, but not check for the new name with it
        return errno;
    const Turn turn(QFileInfo(to).path());
    if (!turn.cause().isNull())
        return EAGAIN;
    if (isOccupied(to))
        return EEXIST;
    return std::rename(source.constData(), destination.constData()) == 0 ? 0 : errno;
}

qint64 freeSpace(const QString &path)
{
    struct statvfs storage {
    };
    if (::statvfs(QFile::encodeName(path).constData(), &storage) != 0)
        return -1;
    return static_cast<qint64>(storage.f_bavail) * static_cast<qint64>(storage.f_frsize);
}

} // namespace aux
