// SPDX-License-Identifier: MIT
#ifndef AUX_FS_STORAGE_H
#define AUX_FS_STORAGE_H

#include <QString>

namespace aux
{

/// Fsyncs a directory, that is the names in it; returns whether that succeeded.
bool syncDirectory(const QString &path);

/// Syncs the file system of the directory; returns whether that succeeded.
bool syncFileSystem(const QString &path);

} // namespace aux

#endif
