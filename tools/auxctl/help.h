// SPDX-License-Identifier: MIT
#ifndef AUXCTL_HELP_H
#define AUXCTL_HELP_H

#include "command.h"

namespace auxctl
{

/// All commands whose names begin with these words, with their summaries.
QString overview(const QStringList &words = {});
/// One command, its arguments and options.
QString helpFor(const Command &command);
/// The manual page, in troff.
QString manualPage();
/// A text that is part of the program.
QString resource(const QString &name);

} // namespace auxctl

#endif
