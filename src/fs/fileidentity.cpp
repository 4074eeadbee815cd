// SPDX-License-Identifier: MIT
#include "fs/fileidentity.h"

#include <QFile>
#include <QFileInfo>

#include <tuple>

namespace aux
{

namespace
{

std::optional<Status> statusOfEntry(const QString &path)
{
    Status status{};
    if (lstat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return status;
}

bool isSameEntry(const QFileInfo &a, const QFileInfo &b)
{
    return a.fileName() == b.fileName() && isSameFile(a.path(), b.path());
}

} // namespace

std::optional<Status> statusOf(const QString &path)
{
    Status status{};
    if (path.contains(QChar::Null) || stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return status;
}

bool areSame(const std::optional<Status> &a, const std::optional<Status> &b)
{
    if (!a || !b)
        return a.has_value() == b.has_value();
    return a->st_dev == b->st_dev && a->st_ino == b->st_ino;
}

bool isUnwritten(const std::optional<Status> &before, const std::optional<Status> &now)
{
    const auto contentOf = [](const Status &status) {
        return std::tuple(status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec);
    };
    return areSame(before, now) && (!before || contentOf(*before) == contentOf(*now));
}

bool isSameFile(const QString &path, const QString &otherPath)
{
    const std::optional<Status> status = statusOf(path);
    return status && areSame(status, statusOf(otherPath));
}

bool isOccupied(const QString &path)
{
    return statusOfEntry(path).has_value();
}

bool isOnlyName(const QString &path, const QString &otherPath)
{
    const QFileInfo other(otherPath);
    if (isSameEntry(QFileInfo(path), other) ||
        isSameEntry(QFileInfo(path), QFileInfo(other.canonicalFilePath())))
        return true;
    const std::optional<Status> entry = statusOfEntry(path);
    return entry && entry->st_nlink == 1 && areSame(entry, statusOf(otherPath));
}

} // namespace aux
