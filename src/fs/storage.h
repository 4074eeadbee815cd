// SPDX-License-Identifier: MIT
#ifndef AUX_FS_STORAGE_H
#define AUX_FS_STORAGE_H

#include <QString>

namespace aux
{

/// Fsyncs a directory, that is the names in it; returns whether that succeeded.
bool syncDirectory(const QString &path);

/// Syncs the file system of a file; returns whether that succeeded.
bool syncFileSystem(const QString &path);

/// Gives a file another name within its file system, which nothing may have; the errno where that
/// fails. Unlike QFile::rename it never copies (a copy that replaces the only original may not be
/// on the storage yet when the power fails), never writes through a dangling link and never takes a
/// name up to its first NUL.
int renameWithoutReplacing(const QString &from, const QString &to);

/// What stays free of a file system, in bytes, so that settings can still be written.
inline constexpr qint64 headRoom = 64LL * 1024 * 1024;

/// Returns how many more bytes the calling user may write to the file system of a directory or
/// file, -1 where that cannot be told.
qint64 freeSpace(const QString &path);

} // namespace aux

#endif
