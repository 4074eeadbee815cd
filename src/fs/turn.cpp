// SPDX-License-Identifier: MIT
#include "fs/turn.h"
#include "aux/fshelper.h"
#include "error/failure.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace aux
{

namespace
{

Descriptor lockDirectory(const QString &path)
{
    Descriptor directory(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory.isOpen())
        return directory;
    int result = -1;
    do {
        result = ::flock(directory.number(), LOCK_EX);
    } while (result != 0 && errno == EINTR);
    return result == 0 ? std::move(directory) : Descriptor();
}

} // namespace

Turn::Turn(const QString &destination)
{
    const QString root = FsHelper::dirLocationToFullPath(DirLocation::Data);
    m_directory = lockDirectory(root);
    if (!m_directory.isOpen())
        m_cause = causeOf(root, errno);
    if (!m_directory.isOpen() && (m_directory = lockDirectory(destination)).isOpen())
        m_cause = QString();
}

bool Turn::isOn(dev_t device) const
{
    struct stat status {
    };
    return ::fstat(m_directory.number(), &status) == 0 && status.st_dev == device;
}

bool Turn::flush() const
{
    return ::syncfs(m_directory.number()) == 0;
}

} // namespace aux
