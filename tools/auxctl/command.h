// SPDX-License-Identifier: MIT
#ifndef AUXCTL_COMMAND_H
#define AUXCTL_COMMAND_H

#include "outcome.h"

#include <QCommandLineParser>
#include <QStringList>

#include <functional>
#include <vector>

namespace auxctl
{

/// One call of a command: its arguments, and its options by name.
struct Invocation {
    QStringList arguments;
    std::function<QString(const QString &)> value;
    std::function<bool(const QString &)> isSet;

    /// The argument at the index, or the fallback where it was left out.
    [[nodiscard]] QString argument(int index, const QString &fallback = {}) const
    {
        return arguments.value(index, fallback);
    }
};

struct Option {
    const char *name;  // a short one may stand before it: "h|help"
    const char *value; // what to give with it; null for a switch
    const char *summary;
};

/// One row of the table that the program, its help, the completion and the manual are made from.
struct Command {
    const char *name;      // one word or two
    const char *arguments; // as the usage shows them: [X] may be left out, X... may be repeated
    const char *key;       // what the result stands under in JSON
    const char *shape;     // and what the result is there
    const char *summary;
    std::vector<Option> options;
    Outcome (*run)(const Invocation &);
    const char *warning = nullptr; // asked for a yes first, with this text

    /// How many arguments it takes at least, and at most.
    [[nodiscard]] int minimumArguments() const;
    [[nodiscard]] int maximumArguments() const;
};

const std::vector<Command> &commands();

/// Options of every command.
const std::vector<Option> &commonOptions();

/// Options of every command that asks first.
extern const Option yesOption;

} // namespace auxctl

#endif
