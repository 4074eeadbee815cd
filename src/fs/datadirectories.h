// SPDX-License-Identifier: MIT
#ifndef AUX_FS_DATADIRECTORIES_H
#define AUX_FS_DATADIRECTORIES_H

#include "aux/fshelper.h"

namespace aux
{

/// Tells whether the location is valid and its directory exists. An invalid location has an empty
/// path, which Qt would take for the current directory.
bool directoryExists(DirLocation location);

} // namespace aux

#endif
