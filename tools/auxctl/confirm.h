// SPDX-License-Identifier: MIT
#ifndef AUXCTL_CONFIRM_H
#define AUXCTL_CONFIRM_H

#include "outcome.h"

namespace auxctl
{

/// Asks on the terminal whether to go on; Usage where there is no terminal to ask, or no yes.
Outcome confirm(const QString &warning);

} // namespace auxctl

#endif
