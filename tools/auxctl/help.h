// SPDX-License-Identifier: MIT
#ifndef AUXCTL_HELP_H
#define AUXCTL_HELP_H

#include "command.h"

namespace auxctl
{

/// All commands with a line each.
QString overview();
/// One command, its arguments and options.
QString helpFor(const Command &command);
/// A script that completes commands and options in bash.
QString bashCompletion();
/// The manual page, in troff.
QString manualPage();

} // namespace auxctl

#endif
