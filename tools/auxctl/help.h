// SPDX-License-Identifier: MIT
#ifndef AUXCTL_HELP_H
#define AUXCTL_HELP_H

#include "outcome.h"

namespace auxctl
{

/// All commands with a line each.
QString overview();
/// A script that completes commands and options in bash.
QString bashCompletion();
/// The manual page, in troff.
QString manualPage();

Outcome plainText(const QString &text);

} // namespace auxctl

#endif
