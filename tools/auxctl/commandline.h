// SPDX-License-Identifier: MIT
#ifndef AUXCTL_COMMANDLINE_H
#define AUXCTL_COMMANDLINE_H

#include "output.h"

#include <QStringList>

#include <functional>

namespace auxctl
{

/// What the command line asks for, ready to run.
struct Call {
    std::function<Outcome()> run;
    Format format;
};

Call parse(const QStringList &arguments);

} // namespace auxctl

#endif
