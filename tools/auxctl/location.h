// SPDX-License-Identifier: MIT
#ifndef AUXCTL_LOCATION_H
#define AUXCTL_LOCATION_H

#include <aux/fshelper.h>

#include <QStringList>

namespace auxctl
{

QStringList locationNames();

/// The location of this name; a misuse with the nearest name where it is none.
aux::DirLocation locationFromName(const QString &name);

} // namespace auxctl

#endif
