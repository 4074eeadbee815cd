// SPDX-License-Identifier: MIT
#include "commandline.h"

#include "confirm.h"
#include "help.h"

#include <aux/systeminfo.h>

#include <algorithm>

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
    const Command *command = findCommand(arguments.mid(begin));
    if (command != nullptr)
        arguments.erase(first, first + QString(command->name).split(' ').size());
    return command;
}

QStringList wordsOf(const QStringList &arguments)
{
    QStringList words;
    std::copy_if(arguments.begin(), arguments.end(), std::back_inserter(words),
                 [](const QString &argument) { return !isOption(argument); });
    return words;
}

void declare(QCommandLineParser &parser, const std::vector<const Option *> &options)
{
    for (const Option *option : options)
        parser.addOption(
            QCommandLineOption(QString(option->name).split('|'), option->summary, option->value));
}

} // namespace

CommandLine::CommandLine(QStringList arguments)
    : m_rest(std::move(arguments)), m_command(takeCommand(m_rest))
{
    // Else "-h.bin" would be taken for the switch h and four more.
    m_parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    declare(m_parser, commonOptions());
    if (m_command != nullptr)
        declare(m_parser, m_command->allOptions());
    m_isParsed = m_parser.parse(QStringList("auxctl") + m_rest);
}

QString CommandLine::key() const
{
    if (has(helpOption))
        return QStringLiteral("help");
    if (has(versionOption))
        return QStringLiteral("version");
    return m_command == nullptr ? QStringLiteral("help") : m_command->key;
}

Result CommandLine::run() const
{
    if (!m_isParsed) {
        if (m_command == nullptr && !wordsOf(m_rest).isEmpty())
            misuseUnknownCommand(wordsOf(m_rest));
        misuse(m_parser.errorText());
    }
    const QStringList words = m_command == nullptr ? wordsOf(m_rest) : QStringList();
    if (m_command == nullptr && !isFamily(words))
        misuseUnknownCommand(words);
    if (has(helpOption) || (!words.isEmpty() && !has(versionOption)))
        return document(m_command == nullptr ? overview(words) : helpFor(*m_command));
    if (has(versionOption))
        return plainText("auxctl " + aux::SystemInfo::getVersion());
    if (m_command == nullptr)
        misuse("no command given, see auxctl help");
    const Call call(m_parser);
    m_command->checkArguments(call.arguments());
    if (m_command->warning != nullptr && !call.has(yesOption))
        confirm(m_command->warning);
    return m_command->run(call);
}

} // namespace auxctl
