// SPDX-License-Identifier: MIT
#include "error/failure.h"
#include "fs/datadirectories.h"
#include "fs/storage.h"

#include <QDir>

#include <unistd.h>

namespace aux
{

std::pair<Error, QStringList> FsHelper::createDirList(DirLocation location)
{
    if (!directoryExists(location))
        return {failure(ErrorId::General, QStringLiteral("FileHelper: directory does not exist")),
                {}};
    const QDir directory(dirLocationToFullPath(location));
    return {{}, directory.entryList(QDir::Files | QDir::Readable)};
}

std::pair<Error, int> FsHelper::getNumberOfDirEntries(DirLocation location)
{
    auto [error, names] = createDirList(location);
    return {std::move(error), names.size()};
}

bool FsHelper::checkFreeSpace(DirLocation location, qint64 bytes)
{
    // The kernel is asked about the directory itself: QStorageInfo reads the whole list of mounts
    // first, which takes longer than the rename it is to guard. Like there, no path is ".".
    const QString path = dirLocationToFullPath(location);
    return freeSpace(path.isEmpty() ? QStringLiteral(".") : path) >= bytes;
}

Error FsHelper::removeEntireDataDir()
{
    bool removed = true;
    for (const DataDirectory &directory : dataDirectories()) {
        // Deliberately not accumulated: the last directory that exists decides.
        if (directory.isClearedByReset && QDir(directory.path).exists())
            removed = QDir(directory.path).removeRecursively();
    }
    ::sync(); // what was removed must not come back with the next power cut
    if (!removed)
        return failure(ErrorId::General,
                       QStringLiteral("Internal error: could not remove data directory"));
    return {};
}

} // namespace aux
