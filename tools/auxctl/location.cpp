// SPDX-License-Identifier: MIT
#include "location.h"

#include "fs/datadirectories.h"
#include "nearest.h"

namespace auxctl
{

namespace
{

QStringList locationNames()
{
    QStringList names;
    for (const aux::DataDirectory &directory : aux::dataDirectories().mid(1)) // not the invalid one
        names += directory.name;
    return names;
}

} // namespace

Outcome withLocation(const QString &name, const std::function<Outcome(aux::DirLocation)> &function)
{
    const aux::DirLocation location = aux::FsHelper::dirLocationFromString(name);
    if (location == aux::DirLocation::Invalid)
        return unknown("location", name, locationNames());
    return function(location);
}

} // namespace auxctl
