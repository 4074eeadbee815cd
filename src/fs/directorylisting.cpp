// SPDX-License-Identifier: MIT
#include "error/failure.h"
#include "fs/datadirectories.h"
#include "fs/directory.h"
#include "fs/storage.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <tuple>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace aux
{

namespace
{

struct SortedName {
    QString key;
    QString name;
    bool operator<(const SortedName &other) const
    {
        return std::tie(key, name) < std::tie(other.key, other.name);
    }
};

/// A file with a name that is not UTF-8 could not be opened by what a QString makes of it.
bool isText(const char *name)
{
    const QByteArray bytes = QByteArray::fromRawData(name, static_cast<int>(qstrlen(name)));
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char byte) { return static_cast<uchar>(byte) < 0x80; }) ||
           QFile::encodeName(QFile::decodeName(bytes)) == bytes;
}

bool isRegular(int directory, const dirent &entry)
{
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_REG;
    struct stat status {
    };
    return ::fstatat(directory, entry.d_name, &status, 0) == 0 && S_ISREG(status.st_mode);
}

bool isListed(int directory, const dirent &entry)
{
    return entry.d_name[0] != '.' && isRegular(directory, entry) &&
           ::faccessat(directory, entry.d_name, R_OK, 0) == 0 && isText(entry.d_name);
}

/// Takes the name of every file that is listed, in no order.
Error forEachFile(DirLocation location, const std::function<void(const char *)> &take)
{
    const auto failed = [](const QString &cause) {
        return failure(ErrorId::General, QStringLiteral("FileHelper: directory does not exist"),
                       cause);
    };
    const QString path = FsHelper::dirLocationToFullPath(location);
    if (path.isEmpty())
        return failed({});
    Directory directory;
    if (!directory.open(AT_FDCWD, QFile::encodeName(path).constData()))
        return failed(causeOf(path, errno));
    while (const dirent *entry = directory.next()) {
        if (isListed(directory.descriptor(), *entry))
            take(entry->d_name);
    }
    return errno == 0 ? Error() : failed(causeOf(path, errno));
}

} // namespace

std::pair<Error, QStringList> FsHelper::createDirList(DirLocation location)
{
    std::vector<SortedName> files;
    Error error = forEachFile(location, [&](const char *bytes) {
        const QString name = QFile::decodeName(bytes);
        files.push_back({name.toLower(), name}); // one text in memory where both are equal
    });
    if (error.hasError())
        return {std::move(error), QStringList()};
    std::sort(files.begin(), files.end());
    QStringList names;
    names.reserve(static_cast<int>(files.size()));
    for (const SortedName &file : files)
        names += file.name;
    return {Error(), names};
}

std::pair<Error, int> FsHelper::getNumberOfDirEntries(DirLocation location)
{
    int count = 0;
    Error error = forEachFile(location, [&](const char *) { ++count; });
    const int result = error.hasError() ? 0 : count;
    return {std::move(error), result};
}

bool FsHelper::checkFreeSpace(DirLocation location, qint64 bytes)
{
    // The kernel is asked about the directory itself: QStorageInfo reads the whole list of mounts
    // first, which takes longer than the rename it is to guard. Like there, no path is ".".
    const QString path = dirLocationToFullPath(location);
    return freeSpace(path.isEmpty() ? QStringLiteral(".") : path) >= bytes;
}

} // namespace aux
