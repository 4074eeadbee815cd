// SPDX-License-Identifier: MIT
#ifndef AUX_PROCESS_SHELL_H
#define AUX_PROCESS_SHELL_H

#include "process/helperprogram.h"

#include <csignal>
#include <cstdlib>
#include <limits>

namespace aux
{

/// Whether the process has the kernel take the end of every child, so that system() cannot tell how
/// a program ended.
inline bool ignoresChildren()
{
    struct sigaction action {
    };
    ::sigaction(SIGCHLD, nullptr, &action);
    return action.sa_handler == SIG_IGN || (action.sa_flags & SA_NOCLDWAIT) != 0;
}

/// Runs a command line with the shell and waits for it. True only where it exits with zero.
inline bool runInShell(const QString &commandLine)
{
    if (!ignoresChildren())
        return std::system(commandLine.toUtf8().constData()) == 0;
    HelperProgram shell;
    shell.leaveOthers();
    const auto asLongAsItTakes = [] { return std::numeric_limits<qint64>::max(); };
    return shell.run(QStringLiteral("sh"), {QStringLiteral("-c"), commandLine}, asLongAsItTakes)
               .isNone() &&
           shell.hasSucceeded();
}

} // namespace aux

#endif
