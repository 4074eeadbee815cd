// SPDX-License-Identifier: MIT
#ifndef AUX_PROCESS_SHELL_H
#define AUX_PROCESS_SHELL_H

#include <QString>

#include <cstdlib>

namespace aux
{

/// Runs a command line with the shell and waits for it. True only where it exits with zero.
inline bool runInShell(const QString &commandLine)
{
    return std::system(commandLine.toUtf8().constData()) == 0;
}

} // namespace aux

#endif
