// SPDX-License-Identifier: MIT
#ifndef AUXCTL_COMMANDLINE_H
#define AUXCTL_COMMANDLINE_H

#include "command.h"

namespace auxctl
{

/// What was asked for on the command line.
class CommandLine
{
public:
    explicit CommandLine(QStringList arguments);

    [[nodiscard]] bool has(const Switch &option) const { return Call(m_parser).has(option); }
    /// What the result stands under in JSON.
    [[nodiscard]] QString key() const;
    /// Does it.
    [[nodiscard]] Result run() const;

private:
    QCommandLineParser m_parser;
    QStringList m_rest; // without the command's name
    const Command *m_command;
    bool m_isParsed;
};

} // namespace auxctl

#endif
