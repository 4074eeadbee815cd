// SPDX-License-Identifier: MIT
#ifndef AUXCTL_CANDIDATES_H
#define AUXCTL_CANDIDATES_H

#include <QStringList>

namespace auxctl
{

/// Stands for the names of files.
constexpr const char *anyFile = ":files";

/// What may stand after the words on a command line, from the table of commands; `current` is the
/// beginning of the word to come.
QStringList candidatesAfter(const QStringList &words, const QString &current);

} // namespace auxctl

#endif
