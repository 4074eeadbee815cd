// SPDX-License-Identifier: MIT
#include "location.h"

#include "nearest.h"

namespace auxctl
{

namespace
{

QStringList locationNames()
{
    QStringList names;
    for (auto value = static_cast<int>(aux::DirLocation::Data);
         value <= static_cast<int>(aux::DirLocation::Tmp); ++value)
        names += aux::FsHelper::dirLocationToString(static_cast<aux::DirLocation>(value));
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
