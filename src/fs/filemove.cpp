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
    Turn turn;
    QString source;
    QString destination;
    DirLocation to;
    std::optional<Status> status;  // of the source, links followed
    std::optional<Status> present; // of the destination
    qint64 space;                  // left in its directory; negative where that cannot be told
    QString checksum;
    bool checkChecksum;

    Verdict verdictOn(const QString &path) const
    {
        return checkChecksum ? compareChecksum(path, checksum) : Verdict{true, {}};
    }
};

Error checksumMismatch(const Verdict &verdict)
{
    return failure(ErrorId::ChecksumMismatch,
                   QStringLiteral("FileHandler: source file checksum mismatch"), verdict.cause);
}

/// Why neither move nor removal can begin; null where nothing is in the way.
QString obstacle(const Move &move)
{
    if (!S_ISREG(move.status->st_mode))
        return causeOf(move.source, notRegular);
    return move.turn.cause();
}

/// Flushes the source; its file system most often is the one in which moves take turns.
bool flush(const Move &move)
{
    return move.turn.isOn(move.status->st_dev) ? move.turn.flush() : syncFileSystem(move.source);
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
    if (move.space < move.status->st_size + headRoom)
        return failure(ErrorId::NoSpace,
                       QStringLiteral("FileHandler: not enough space in destination"),
                       causeOf(FsHelper::dirLocationToFullPath(move.to), ENOSPC));
    const QString inTheWay = obstacle(move);
    if (!inTheWay.isNull())
        return failed(inTheWay);
    // The new name may reach the storage at any moment; what it names must be there by then.
    if (!flush(move))
        return failed(causeOf(move.source, errno));
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
    const QString inTheWay = obstacle(move);
    if (!inTheWay.isNull())
        return failed(inTheWay);
    if (isOnlyName(move.source, move.destination))
        return {};
    // The destination may have arrived just now.
    if (!syncFileSystem(move.destination))
        return failed(causeOf(move.destination, errno));
    if (::unlink(QFile::encodeName(move.source).constData()) != 0)
        return failed(causeOf(move.source, errno));
    return {};
}

/// Returns whether the directory of a location is there; `isProven` by what was found in it.
bool isThere(DirLocation location, bool isProven)
{
    return isProven ? !FsHelper::dirLocationToFullPath(location).isEmpty()
                    : directoryExists(location);
}

Error start(Move move)
{
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
    const QString target = dirLocationToFullPath(to);
    Move move{Turn(target),
              source,
              destination,
              to,
              statusOf(source),
              statusOf(destination),
              freeSpace(target + QLatin1Char('/')), // of nothing but a directory
              checksum,
              checkChecksum};
    if (!isThere(from, move.status.has_value()))
        return failure(ErrorId::General,
                       QStringLiteral("FileHandler: source directory does not exist"),
                       causeOfMissing(from));
    if (!isThere(to, move.space >= 0))
        return failure(ErrorId::General,
                       QStringLiteral("FileHandler: destination directory does not exist"),
                       causeOfMissing(to));
    Error error = start(std::move(move)); // the turn ends here: flushing everything takes long
    if (!error.hasError())
        ::sync();
    return error;
}

} // namespace aux
