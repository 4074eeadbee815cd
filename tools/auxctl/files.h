// SPDX-License-Identifier: MIT
#ifndef AUXCTL_FILES_H
#define AUXCTL_FILES_H

#include "command.h"

#include <functional>

namespace auxctl
{

/// What was found out about a file; a check of it may have been answered with no.
struct Finding {
    Record fields;
    bool isNo = false;
    aux::Error reason = {}; // of the no, where there is one to be told
};

/// The arguments as files: the name of a location, where no file is called so, stands for all of
/// its files.
QStringList filesOf(const QStringList &arguments);

/// The argument as a directory, which the name of a location may stand for.
QString directoryOf(const QString &argument);

/// Looks at each file, also where one before could not be looked at, which is Failed in the end;
/// else No where an answer was no. One file gets a line per field, several a line each.
Result lookAtEach(const QStringList &files, const std::function<Finding(const QString &)> &look);

} // namespace auxctl

#endif
