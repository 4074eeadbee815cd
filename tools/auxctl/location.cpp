// SPDX-License-Identifier: MIT
#include "location.h"

#include "failure.h"
#include "fs/datadirectories.h"

namespace auxctl
{

QStringList locationNames()
{
    QStringList names;
    for (const aux::DataDirectory &directory : aux::dataDirectories().mid(1)) // not the invalid one
        names += directory.name;
    return names;
}

aux::DirLocation locationFromName(const QString &name)
{
    const aux::DirLocation location = aux::FsHelper::dirLocationFromString(name);
    if (location == aux::DirLocation::Invalid)
        misuseUnknown("location", name, locationNames());
    return location;
}

} // namespace auxctl
