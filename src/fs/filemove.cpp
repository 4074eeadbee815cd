// SPDX-License-Identifier: MIT
#include "error/failure.h"
#include "fs/checksum.h"
#include "fs/datadirectories.h"
#include "fs/fileidentity.h"
#include "fs/storage.h"
#include "fs/turn.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <unistd.h>

namespace aux
{

namespace
{

struct Move {
    DirLocation from;
    DirLocation to;
    QString source;
    QString destination;
    QString checksum;
    bool checkChecksum;
    std::optional<Status> status = statusOf(source);       // links followed
    std::optional<Status> present = statusOf(destination); // links followed
    /// Left in the destination's directory; negative where there is none.
    qint64 space = freeSpace(FsHelper::dirLocationToFullPath(to) + QLatin1Char('/'));

    Verdict verdictOn(const QString &path) const
    {
        return checkChecksum ? compareChecksum(path, checksum) : Verdict{true, {}};
    }
    /// Whether what both names lead to is still the same: areSame or isUnwritten.
    bool isStill(bool (&same)(const std::optional<Status> &, const std::optional<Status> &)) const
    {
        return same(status, statusOf(source)) && same(present, statusOf(destination));
    }
};

Error checksumMismatch(const Verdict &verdict)
{
    return failure(ErrorId::ChecksumMismatch,
                   QStringLiteral("FileHandler: source file checksum mismatch"), verdict.cause);
}

Error moveNew(const Move &move)
{
    const auto failed = [](const QString &cause) {
        return failure(ErrorId::MoveFailed,
                       QStringLiteral("FileHandler: moving source file to destination failed"),
                       cause);
    };
    const Verdict verdict = move.verdictOn(move.source);
    if (!verdict.isGood)
        return checksumMismatch(verdict);
    if (move.space - headRoom < move.status->st_size)
        return failure(ErrorId::NoSpace,
                       QStringLiteral("FileHandler: not enough space in destination"),
                       causeOf(FsHelper::dirLocationToFullPath(move.to), ENOSPC));
    if (!S_ISREG(move.status->st_mode))
        return failed(causeOf(move.source, notRegular));
    // The new name may reach the storage at any moment; what it names must be there by then.
    if (!syncFileSystem(move.source))
        return failed(causeOf(move.source, errno));
    if (move.checkChecksum && !move.isStill(isUnwritten)) // since it was verified
        return failed(causeOf(move.source, ESTALE));
    const int error = renameWithoutReplacing(move.source, move.destination);
    return error == 0 ? Error() : failed(causeOf(move.destination, error));
}

Error discardDuplicate(const Move &move)
{
    const auto failed = [](const QString &cause) {
        return failure(
            ErrorId::MoveFailed,
            QStringLiteral(
                "FileHandler: removing source file already present in destination failed"),
            cause);
    };
    // Deliberately kept when it is corrupt and the source is not: a destination is never replaced.
    if (!move.verdictOn(move.destination).isGood) {
        const Verdict verdict = move.verdictOn(move.source);
        if (!verdict.isGood)
            return checksumMismatch(verdict);
    }
    if (!S_ISREG(move.status->st_mode))
        return failed(causeOf(move.source, notRegular));
    // The destination may have arrived just now.
    if (!syncFileSystem(move.destination))
        return failed(causeOf(move.destination, errno));
    // It may be about to be removed, too, as a duplicate in some other location.
    const Turn turn(FsHelper::dirLocationToFullPath(DirLocation::Data));
    if (!turn.cause().isNull())
        return failed(turn.cause());
    if (!move.isStill(move.checkChecksum ? isUnwritten : areSame))
        return failed(causeOf(move.destination, ESTALE));
    if (!isOnlyName(move.source, move.destination) &&
        ::unlink(QFile::encodeName(move.source).constData()) != 0)
        return failed(causeOf(move.source, errno));
    return {};
}

/// Returns whether the directory of a location is there; `isProven` by what was found in it.
bool isThere(DirLocation location, bool isProven)
{
    return isProven ? !FsHelper::dirLocationToFullPath(location).isEmpty()
                    : directoryExists(location);
}

Error attempt(const Move &move)
{
    if (!isThere(move.from, move.status.has_value()))
        return failure(ErrorId::General,
                       QStringLiteral("FileHandler: source directory does not exist"),
                       causeOfMissing(move.from));
    if (!isThere(move.to, move.space >= 0))
        return failure(ErrorId::General,
                       QStringLiteral("FileHandler: destination directory does not exist"),
                       causeOfMissing(move.to));
    if (!move.status)
        return failure(ErrorId::SourceMissing,
                       QStringLiteral("FileHandler: source file does not exist"),
                       causeOf(move.source, ENOENT));
    if ((move.status->st_mode & S_IRUSR) == 0)
        return failure(ErrorId::NotReadable, QStringLiteral("FileHandler: cannot read source file"),
                       causeOf(move.source, QStringLiteral("its owner may not read it")));
    return move.present && S_ISREG(move.present->st_mode) ? discardDuplicate(move) : moveNew(move);
}

} // namespace

Error FsHelper::fileMove(DirLocation from, DirLocation to, const QString &fileName,
                         const QString &checksum, bool checkChecksum, const QString &newFileName)
{
    const QString &newName = newFileName.isEmpty() ? fileName : newFileName;
    const QString source = createPathName(from, QFileInfo(fileName).fileName());
    const QString destination = createPathName(to, QFileInfo(newName).fileName());
    for (;;) {
        const Move move{from, to, source, destination, checksum, checkChecksum};
        Error error = attempt(move);
        if (!error.hasError())
            ::sync();
        if (!error.hasError() || move.isStill(areSame))
            return error;
        // Another move came in between.
    }
}

} // namespace aux
