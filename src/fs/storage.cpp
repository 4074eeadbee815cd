// SPDX-License-Identifier: MIT
#include "fs/storage.h"
#include "fs/regularfile.h"

#include <QFile>
#include <QFileInfo>

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

qint64 freeSpace(const QString &path)
{
    struct statvfs storage {
    };
    if (::statvfs(QFile::encodeName(path).constData(), &storage) != 0)
        return -1;
    return static_cast<qint64>(storage.f_bavail) * static_cast<qint64>(storage.f_frsize);
}

} // namespace aux
