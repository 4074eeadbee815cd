// SPDX-License-Identifier: MIT
#include "error/failure.h"
#include "fs/datadirectories.h"
#include "fs/fileidentity.h"
#include "fs/storage.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace aux
{

namespace
{

struct Move {
    QFileInfo source; // asks the file system once
    DirLocation to;
    QString destination;
    QString checksum;
    bool checkChecksum;

    bool hasChecksum(const QString &path) const
    {
        return !checkChecksum || FsHelper::validateChecksum(path, checksum);
    }
};

Error checksumMismatch()
{
    return failure(ErrorId::ChecksumMismatch,
                   QStringLiteral("FileHandler: source file checksum mismatch"));
}

/// Gives a file another name within its file system. Unlike QFile::rename it never copies (a copy
/// that replaces the only original may not be on the storage yet when the power fails), never
/// writes through a dangling link and never takes a name up to its first NUL.
bool renameFile(const QFileInfo &from, const QString &to)
{
    if (from.isDir() || to.contains(QChar::Null))
        return false;
    const QByteArray source = QFile::encodeName(from.filePath());
    const QByteArray destination = QFile::encodeName(to);
    if (renameat2(AT_FDCWD, source.constData(), AT_FDCWD, destination.constData(),
                  RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL) // this file system can rename, but not check for the new name with it
        return false;
    return !isOccupied(to) && std::rename(source.constData(), destination.constData()) == 0;
}

Error moveNew(const Move &move)
{
    if (!move.hasChecksum(move.source.filePath()))
        return checksumMismatch();
    if (!FsHelper::checkFreeSpace(move.to, move.source.size() + headRoom))
        return failure(ErrorId::NoSpace,
                       QStringLiteral("FileHandler: not enough space in destination"));
    // The new name may reach the storage at any moment; what it names must be there by then.
    if (!syncFileSystem(move.source.path()) || !renameFile(move.source, move.destination))
        return failure(ErrorId::MoveFailed,
                       QStringLiteral("FileHandler: moving source file to destination failed"));
    return {};
}

Error discardDuplicate(const Move &move)
{
    const QString source = move.source.filePath();
    // Deliberately kept when it is corrupt and the source is not: a destination is never replaced.
    if (!move.hasChecksum(move.destination) && !move.hasChecksum(source))
        return checksumMismatch();
    if (isOnlyName(source, move.destination))
        return {};
    // The destination may have arrived just now.
    if (!syncFileSystem(QFileInfo(move.destination).path()) || !QFile::remove(source))
        return failure(
            ErrorId::MoveFailed,
            QStringLiteral(
                "FileHandler: removing source file already present in destination failed"));
    return {};
}

} // namespace

Error FsHelper::fileMove(DirLocation from, DirLocation to, const QString &fileName,
                         const QString &checksum, bool checkChecksum, const QString &newFileName)
{
    if (!directoryExists(from))
        return failure(ErrorId::General,
                       QStringLiteral("FileHandler: source directory does not exist"));
    if (!directoryExists(to))
        return failure(ErrorId::General,
                       QStringLiteral("FileHandler: destination directory does not exist"));

    const QFileInfo source(createPathName(from, QFileInfo(fileName).fileName()));
    if (!source.exists())
        return failure(ErrorId::SourceMissing,
                       QStringLiteral("FileHandler: source file does not exist"));
    if (!source.permission(QFileDevice::ReadOwner))
        return failure(ErrorId::NotReadable,
                       QStringLiteral("FileHandler: cannot read source file"));

    const QString &newName = newFileName.isEmpty() ? fileName : newFileName;
    const QString destination = createPathName(to, QFileInfo(newName).fileName());
    const Move move{source, to, destination, checksum, checkChecksum};
    Error error = QFileInfo(destination).isFile() ? discardDuplicate(move) : moveNew(move);
    if (!error.hasError())
        ::sync();
    return error;
}

} // namespace aux
