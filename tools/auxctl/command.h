// SPDX-License-Identifier: MIT
#ifndef AUXCTL_COMMAND_H
#define AUXCTL_COMMAND_H

#include "failure.h"
#include "result.h"

#include <QCommandLineParser>
#include <QStringList>

#include <optional>
#include <vector>

namespace auxctl
{

/// An option as the help shows it.
struct Option {
    const char *name;  // a short one may stand before it: "h|help"
    const char *value; // what to give with it; null for a switch
    const char *summary;
};

/// An option that is there or not.
struct Switch : Option {
    constexpr Switch(const char *name, const char *summary) : Option{name, nullptr, summary} {}
};

/// An option with a value of this type.
template <typename Type>
struct ValueOption : Option {
    using Parse = Type (*)(const QString &); // a misuse where the text is no such value

    constexpr ValueOption(const char *name, const char *value, const char *summary, Parse parse)
        : Option{name, value, summary}, parse(parse)
    {
    }
    Parse parse;
};

/// The value of an option that takes any text.
inline QString anyText(const QString &text)
{
    return text;
}

/// One call of a command: its arguments and its options.
class Call
{
public:
    explicit Call(const QCommandLineParser &parser) : m_parser(parser) {}

    [[nodiscard]] QStringList arguments() const { return m_parser.positionalArguments(); }
    /// The argument at the index, or the fallback where it was left out.
    [[nodiscard]] QString argument(int index, const QString &fallback = {}) const
    {
        return arguments().value(index, fallback);
    }

    /// Also of an option that the command does not have.
    [[nodiscard]] bool has(const Option &option) const;
    template <typename Type>
    [[nodiscard]] std::optional<Type> value(const ValueOption<Type> &option) const
    {
        if (!has(option))
            return std::nullopt;
        return option.parse(m_parser.value(nameOf(option)));
    }

private:
    static QString nameOf(const Option &option) { return QString(option.name).section('|', -1); }

    const QCommandLineParser &m_parser;
};

/// One row of the table that the program, its help, the completion and the manual are made from.
struct Command {
    const char *name;      // one word or more
    const char *arguments; // as the usage shows them: [X] may be left out, X... may be repeated
    const char *key;       // what the result stands under in JSON
    const char *shape;     // and what the result is there
    const char *summary;
    std::vector<const Option *> options;
    Result (*run)(const Call &);
    const char *warning = nullptr; // asked for a yes first, with this text

    /// Options of its own, that of the question included.
    [[nodiscard]] std::vector<const Option *> allOptions() const;
    /// A misuse where there are too few arguments, too many, or an empty one.
    void checkArguments(const QStringList &given) const;
};

/// A file with a command makes one of these, which puts the command into the table.
struct Registration {
    explicit Registration(Command command);
};

/// All commands in the order of their names.
const std::vector<Command> &commands();

/// The command whose name the words begin with; null where there is none.
const Command *findCommand(const QStringList &words);
/// Whether the words are the beginning of any command's name, as none are.
bool isFamily(const QStringList &words);
[[noreturn]] void misuseUnknownCommand(const QStringList &words);

/// @{
/// Options of every command.
extern const Switch jsonOption;
extern const Switch debugOption;
extern const Switch helpOption;
extern const Switch versionOption;
const std::vector<const Option *> &commonOptions();
/// @}

/// Of commands that make sense when repeated: main does that, and prints what changes.
extern const Switch watchOption;

/// An option of every command that asks first.
extern const Switch yesOption;

} // namespace auxctl

#endif
