// SPDX-License-Identifier: MIT
#include "command.h"

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
constexpr Switch versionOption{"version", "Print the version"};
constexpr Switch yesOption{"yes", "Do not ask"};

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

const std::vector<const Option *> &commonOptions()
{
    static const std::vector<const Option *> options{&jsonOption, &debugOption, &helpOption,
                                                     &versionOption};
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
        misuse(QStringLiteral("usage: auxctl %1 %2").arg(name, arguments));
    if (given.contains(QString()))
        misuse("an argument is empty");
}

} // namespace auxctl
