// SPDX-License-Identifier: MIT
#include "command.h"

#include "progress.h"

#include <algorithm>

namespace auxctl
{

namespace
{

std::vector<Command> &table()
{
    static std::vector<Command> rows;
    return rows;
}

} // namespace

constexpr Switch jsonOption{"json", "Print one JSON document"};
constexpr Switch debugOption{"debug", "Print the library's diagnostic lines to standard error"};
constexpr Switch helpOption{"h|help", "Print help"};
constexpr Switch versionOption{"V|version", "Print the version"};
constexpr Switch yesOption{"yes", "Do not ask"};
constexpr Switch watchOption{"watch", "Look every second, and print what changes"};

bool Call::has(const Option &option) const
{
    const QStringList names = QString(option.name).split('|');
    return std::any_of(names.begin(), names.end(), [this](const QString &name) {
        return m_parser.optionNames().contains(name);
    });
}

Registration::Registration(Command command)
{
    const auto isBefore = [](const Command &a, const Command &b) {
        return qstrcmp(a.name, b.name) < 0;
    };
    const auto place = std::upper_bound(table().begin(), table().end(), command, isBefore);
    table().insert(place, std::move(command));
}

const std::vector<Command> &commands()
{
    return table();
}

const Command *findCommand(const QStringList &words)
{
    for (const Command &command : commands()) {
        const QStringList name = QString(command.name).split(' ');
        if (words.mid(0, name.size()) == name)
            return &command;
    }
    return nullptr;
}

bool isFamily(const QStringList &words)
{
    return std::any_of(commands().begin(), commands().end(), [&words](const Command &command) {
        return QString(command.name).split(' ').mid(0, words.size()) == words;
    });
}

void misuseUnknownCommand(const QStringList &words)
{
    QStringList names;
    for (const Command &command : commands())
        names += command.name;
    const int size = isFamily(words.mid(0, 2)) ? 3 : 2;
    misuseUnknown("command", words.mid(0, size).join(' '), names);
}

const std::vector<const Option *> &commonOptions()
{
    static const std::vector<const Option *> options{&jsonOption, &debugOption, &quietOption,
                                                     &helpOption, &versionOption};
    return options;
}

std::vector<const Option *> Command::allOptions() const
{
    std::vector<const Option *> all = options;
    if (warning != nullptr)
        all.push_back(&yesOption);
    return all;
}

void Command::checkArguments(const QStringList &given) const
{
    const QStringList words = QString(arguments).split(' ', Qt::SkipEmptyParts);
    const auto least = std::count_if(words.begin(), words.end(),
                                     [](const QString &word) { return !word.startsWith('['); });
    const bool isOpen = !words.isEmpty() && words.last().contains("...");
    if (given.size() < least || (given.size() > words.size() && !isOpen))
        misuse(QStringLiteral("usage: auxctl %1 %2").arg(name, arguments).trimmed());
    if (given.contains(QString()))
        misuse("an argument is empty");
}

} // namespace auxctl
