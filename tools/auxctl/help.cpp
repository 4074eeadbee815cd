// SPDX-License-Identifier: MIT
#include "help.h"

#include <aux/systeminfo.h>

#include <QFile>

namespace auxctl
{

namespace
{

QString callOf(const Command &command)
{
    return QStringLiteral("auxctl %1 %2").arg(command.name, command.arguments).trimmed();
}

QString longName(const Option &option)
{
    return QStringLiteral("--") + QString(option.name).section('|', -1);
}

QString spelled(const Option &option)
{
    const QString name = longName(option);
    return option.value == nullptr ? name : name + ' ' + option.value;
}

QString optionLines(const std::vector<const Option *> &options)
{
    QVector<QStringList> rows;
    for (const Option *option : options)
        rows += {"  " + spelled(*option), option->summary};
    return alignedText(rows);
}

QString completionCase(const Command &command)
{
    QStringList words;
    for (const std::vector<const Option *> &options : {command.allOptions(), commonOptions()}) {
        for (const Option *option : options)
            words += longName(*option);
    }
    return QStringLiteral("        \"%1\"*) words=\"%2\" ;;").arg(command.name, words.join(' '));
}

QString troff(QString text)
{
    return text.replace('\\', QStringLiteral("\\e")).replace('-', QStringLiteral("\\-"));
}

QString manualEntry(const Command &command)
{
    QString entry =
        QStringLiteral(".TP\n.B %1\n%2.\n.br\nJSON: {\"%3\": %4}\n")
            .arg(troff(callOf(command)), troff(command.summary), command.key, troff(command.shape));
    for (const Option *option : command.allOptions())
        entry += QStringLiteral(".br\n.B %1\n%2.\n")
                     .arg(troff(spelled(*option)), troff(option->summary));
    return entry;
}

QString resource(const char *name)
{
    QFile file(QStringLiteral(":/auxctl/") + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

QString overview()
{
    QVector<QStringList> rows;
    for (const Command &command : commands())
        rows += {"  " + callOf(command), command.summary};
    return QStringLiteral(
               "Settings, files, containers and the system of a terminal.\n\nCommands:\n") +
           alignedText(rows) + QStringLiteral("\n\nOptions of every command:\n") +
           optionLines(commonOptions()) +
           QStringLiteral("\n\nExit status: 0 done, 1 failed, 2 wrong call, 3 a check said no.");
}

QString helpFor(const Command &command)
{
    const QString json = QStringLiteral("JSON: {\"%1\": %2}").arg(command.key, command.shape);
    QStringList parts{callOf(command), command.summary, optionLines(commonOptions()), json};
    const QString own = optionLines(command.allOptions());
    if (!own.isEmpty())
        parts.insert(2, own);
    return parts.join(QStringLiteral("\n\n"));
}

QString bashCompletion()
{
    QStringList names;
    QStringList cases;
    for (const Command &command : commands()) {
        names += command.name;
        cases += completionCase(command);
    }
    return resource("completion.bash")
        .replace("@NAMES@", '"' + names.join("\" \"") + '"')
        .replace("@CASES@", cases.join('\n'))
        .trimmed();
}

QString manualPage()
{
    QString entries;
    for (const Command &command : commands())
        entries += manualEntry(command);
    QString common;
    for (const Option *option : commonOptions())
        common += QStringLiteral(".TP\n.B %1\n%2.\n")
                      .arg(troff(spelled(*option)), troff(option->summary));
    return resource("auxctl.1")
        .replace("@VERSION@", aux::SystemInfo::getVersion())
        .replace("@COMMANDS@", entries)
        .replace("@OPTIONS@", common)
        .trimmed();
}

} // namespace auxctl
