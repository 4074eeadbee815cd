// SPDX-License-Identifier: MIT
#ifndef AUXCTL_LOCATION_H
#define AUXCTL_LOCATION_H

#include "outcome.h"

#include <aux/fshelper.h>

#include <functional>

namespace auxctl
{

/// Runs the function with the location of this name; Usage with the nearest name where it is none.
Outcome withLocation(const QString &name, const std::function<Outcome(aux::DirLocation)> &function);

} // namespace auxctl

#endif
