// SPDX-License-Identifier: MIT
#include "fs/storage.h"

#include <QFile>

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace aux
{

namespace
{

bool syncWith(int (*sync)(int), const QString &path)
{
    const int directory =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0)
        return false;
    const bool synced = sync(directory) == 0;
    ::close(directory);
    return synced;
}

} // namespace

bool syncDirectory(const QString &path)
{
    return syncWith(::fsync, path);
}

bool syncFileSystem(const QString &path)
{
    return syncWith(::syncfs, path);
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
