// SPDX-License-Identifier: MIT
#ifndef AUX_FS_DATADIRECTORIES_H
#define AUX_FS_DATADIRECTORIES_H

#include "aux/fshelper.h"

#include <QVector>

namespace aux
{

/// What is known of a location.
struct DataDirectory {
    DirLocation location;
    QString name;
    QString path;       // of the temporary directory the one at load time; it may change
    bool isFoundByPath; // dirLocationFromFullPath knows it
    bool isClearedByReset;
};

/// All locations, indexed by DirLocation, the invalid one included.
const QVector<DataDirectory> &dataDirectories();

/// Returns whether the location is valid and its directory exists. An invalid location has an empty
/// path, which Qt would take for the current directory.
bool directoryExists(DirLocation location);

/// Says why a location is no directory; null where the location is invalid.
QString causeOfMissing(DirLocation location);

} // namespace aux

#endif
