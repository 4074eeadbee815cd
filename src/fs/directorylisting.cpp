// SPDX-License-Identifier: MIT
#include "error/failure.h"
#include "fs/datadirectories.h"

#include <QDir>
#include <QStorageInfo>

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
    const QStorageInfo storage(QDir(dirLocationToFullPath(location)));
    return storage.bytesAvailable() >= bytes;
}

Error FsHelper::removeEntireDataDir()
{
    bool removed = true;
    for (const DirLocation location :
         {DirLocation::Config, DirLocation::New, DirLocation::Archive, DirLocation::Transfer,
          DirLocation::Log, DirLocation::Failed}) {
        // Deliberately not accumulated: the last directory that exists decides.
        if (directoryExists(location))
            removed = QDir(dirLocationToFullPath(location)).removeRecursively();
    }
    if (!removed)
        return failure(ErrorId::General,
                       QStringLiteral("Internal error: could not remove data directory"));
    return {};
}

} // namespace aux
