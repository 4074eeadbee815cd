// SPDX-License-Identifier: MIT
#ifndef AUX_FS_STORAGE_H
#define AUX_FS_STORAGE_H

#include <QString>

namespace aux
{

/// Brings the names in a directory to the storage; tells whether they are there.
bool syncDirectory(const QString &path);

/// Brings everything in the directory's file system to the storage; tells whether it is there.
bool syncFileSystem(const QString &path);

} // namespace aux

#endif
