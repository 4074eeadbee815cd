// SPDX-License-Identifier: MIT
#include "error/failure.h"
#include "fs/datadirectories.h"
#include "fs/emptying.h"
#include "fs/fileidentity.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace aux
{

namespace
{

/// Whether the directory or one above it is the other.
bool isBelow(const QString &directory, const QString &other)
{
    QString path = QFileInfo(directory).canonicalFilePath();
    while (!path.isEmpty() && path != QLatin1String("/") && !isSameFile(path, other))
        path = QFileInfo(path).path();
    return !path.isEmpty() && isSameFile(path, other);
}

/// Whether what a reset leaves alone is the directory or lies in it: the data root, the temporary
/// directory and the directories of the locations.
bool holdsMore(const QString &directory)
{
    const QVector<DataDirectory> &rows = dataDirectories();
    return std::any_of(rows.begin(), rows.end(), [&](const DataDirectory &row) {
        const QString kept = row.isClearedByReset ? QFileInfo(row.path).path() : row.path;
        return !kept.isEmpty() && isBelow(kept, directory);
    });
}

/// Empties the directory of a location, where it leads if it is a link; the cause where something
/// is left.
QString emptyLocation(const QString &path)
{
    Directory directory;
    if (!directory.open(AT_FDCWD, QFile::encodeName(path).constData()))
        return causeOf(path, errno);
    Emptying emptying(std::move(directory));
    return emptying.run() ? QString() : causeOf(path + emptying.obstacle(), emptying.error());
}

/// Removes a location; the cause where something is left.
QString removeLocation(const QString &path)
{
    const bool isLink = QFileInfo(path).isSymLink();
    if (!isLink || (QDir(path).exists() && !holdsMore(path))) {
        QString cause = emptyLocation(path);
        if (!cause.isNull())
            return cause;
    }
    return ::unlinkat(AT_FDCWD, QFile::encodeName(path).constData(), isLink ? 0 : AT_REMOVEDIR) == 0
               ? QString()
               : causeOf(path, errno);
}

} // namespace

Error FsHelper::removeEntireDataDir()
{
    QString cause;
    for (const DataDirectory &directory : dataDirectories()) {
        if (!directory.isClearedByReset)
            continue;
        // Deliberately not accumulated: the last directory that exists decides.
        if (QDir(directory.path).exists())
            cause = removeLocation(directory.path);
        else if (QFileInfo(directory.path).isSymLink())
            removeLocation(directory.path); // it leads nowhere
    }
    ::sync(); // what was removed must not come back with the next power cut
    if (!cause.isNull())
        return failure(ErrorId::General,
                       QStringLiteral("Internal error: could not remove data directory"), cause);
    return {};
}

} // namespace aux
