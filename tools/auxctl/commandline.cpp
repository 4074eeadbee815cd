// SPDX-License-Identifier: MIT
#include "commandline.h"

#include "command.h"
#include "confirm.h"
#include "help.h"
#include "nearest.h"

#include <aux/systeminfo.h>

#include <algorithm>
#include <memory>

namespace auxctl
{

namespace
{

bool isOption(const QString &argument)
{
    return argument.startsWith('-') && argument.size() > 1;
}

/// The command whose name the words begin with, which are then removed.
const Command *takeCommand(QStringList &arguments)
{
    const auto first = std::find_if_not(arguments.begin(), arguments.end(), isOption);
    const auto begin = static_cast<int>(first - arguments.begin());
    for (const Command &command : commands()) {
        const QStringList words = QString(command.name).split(' ');
        if (arguments.mid(begin, words.size()) == words) {
            arguments.erase(first, first + words.size());
            return &command;
        }
    }
    return nullptr;
}

Outcome unknownCommand(const QStringList &arguments)
{
    QStringList words;
    std::copy_if(arguments.begin(), arguments.end(), std::back_inserter(words),
                 [](const QString &argument) { return !isOption(argument); });
    if (words.isEmpty())
        return misused("no command given, see auxctl --help");
    QStringList names;
    for (const Command &command : commands())
        names += command.name;
    return unknown("command", words.mid(0, 2).join(' '), names);
}

void declare(QCommandLineParser &parser, const std::vector<Option> &options)
{
    for (const Option &option : options)
        parser.addOption(
            QCommandLineOption(QString(option.name).split('|'), option.summary, option.value));
}

std::shared_ptr<QCommandLineParser> makeParser(const Command *command)
{
    auto parser = std::make_shared<QCommandLineParser>();
    declare(*parser, commonOptions());
    if (command == nullptr)
        return parser;
    declare(*parser, command->options);
    if (command->warning != nullptr)
        declare(*parser, {yesOption});
    return parser;
}

Outcome runCommand(const Command &command, const QCommandLineParser &parser)
{
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() < command.minimumArguments() ||
        arguments.size() > command.maximumArguments())
        return misused(QStringLiteral("usage: auxctl %1 %2").arg(command.name, command.arguments));
    if (arguments.contains(QString()))
        return misused("an argument is empty");
    const Invocation invocation{arguments,
                                [&parser](const QString &name) { return parser.value(name); },
                                [&parser](const QString &name) { return parser.isSet(name); }};
    if (command.warning != nullptr && !invocation.isSet(yesOption.name)) {
        Outcome refused = confirm(command.warning);
        if (refused.status != ExitStatus::Done)
            return refused;
    }
    return command.run(invocation);
}

Outcome dispatch(const Command *command, const QCommandLineParser &parser, bool parsed,
                 const QStringList &rest)
{
    if (parser.isSet("help"))
        return plainText(command == nullptr ? overview() : helpFor(*command));
    if (parser.isSet("version"))
        return plainText("auxctl " + aux::SystemInfo::getVersion());
    if (command == nullptr)
        return unknownCommand(rest);
    if (!parsed)
        return misused(parser.errorText());
    return runCommand(*command, parser);
}

/// What the result stands under in JSON.
QString keyOf(const Command *command, const QCommandLineParser &parser)
{
    for (const char *option : {"help", "version"}) {
        if (parser.isSet(option))
            return option;
    }
    return command == nullptr ? QString() : command->key;
}

} // namespace

Call parse(const QStringList &arguments)
{
    QStringList rest = arguments;
    const Command *command = takeCommand(rest);
    const auto parser = makeParser(command);
    const bool parsed = parser->parse(QStringList("auxctl") + rest);
    const Format format{parser->isSet("json"), keyOf(command, *parser), parser->isSet("debug")};
    return {[=] { return dispatch(command, *parser, parsed, rest); }, format};
}

} // namespace auxctl
