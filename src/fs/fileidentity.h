// SPDX-License-Identifier: MIT
#ifndef AUX_FS_FILEIDENTITY_H
#define AUX_FS_FILEIDENTITY_H

#include <QString>

#include <optional>

#include <sys/stat.h>

namespace aux
{

using Status = struct stat;

/// What is known of the file that a path leads to, links followed; nothing where there is none.
std::optional<Status> statusOf(const QString &path);

/// Returns whether both are of one file (same device and inode), or both of none.
bool areSame(const std::optional<Status> &a, const std::optional<Status> &b);

/// Returns whether both are of one file that was not written to in between, or both of none.
bool isUnwritten(const std::optional<Status> &before, const std::optional<Status> &now);

/// Returns whether both paths lead to one file, links followed.
bool isSameFile(const QString &path, const QString &otherPath);

/// Returns whether anything has this name, a dangling link too.
bool isOccupied(const QString &path);

/// Returns whether removing `path` would take the file away that `otherPath` names: both are the
/// same directory entry, or `otherPath` is another spelling of it or a link to it.
bool isOnlyName(const QString &path, const QString &otherPath);

} // namespace aux

#endif
