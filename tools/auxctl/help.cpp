// SPDX-License-Identifier: MIT
#include "help.h"

#include "location.h"
#include "settings.h"

#include <aux/systeminfo.h>

#include <QFile>

namespace auxctl
{

namespace
{

constexpr int lineWidth = 80;
constexpr int summaryColumn = 34;

QString callOf(const Command &command)
{
    return QStringLiteral("%1 %2").arg(command.name, command.arguments).trimmed();
}

QString spelled(const Option &option)
{
    const QString name = QStringLiteral("--") + QString(option.name).section('|', -1);
    return option.value == nullptr ? name : name + ' ' + option.value;
}

/// The words in lines that are short enough, each with so many blanks in front.
QString wrapped(const QString &text, int indent)
{
    QStringList lines{QString(indent, ' ')};
    for (const QString &word : text.split(' ')) {
        QString &line = lines.last();
        if (line.size() == indent)
            line += word;
        else if (line.size() + 1 + word.size() <= lineWidth)
            line += ' ' + word;
        else
            lines += QString(indent, ' ') + word;
    }
    return lines.join('\n');
}

/// A term and what it means, beside it where there is room, else below.
QString entry(const QString &term, const QString &meaning)
{
    const QString left = "  " + term;
    const QString right = wrapped(meaning, summaryColumn);
    return left.size() + 2 > summaryColumn ? left + '\n' + right : left + right.mid(left.size());
}

QString optionLines(const std::vector<const Option *> &options)
{
    QStringList lines;
    for (const Option *option : options)
        lines += entry(spelled(*option), option->summary);
    return lines.join('\n');
}

QString troff(QString text)
{
    return text.replace('\\', QStringLiteral("\\e")).replace('-', QStringLiteral("\\-"));
}

QString manualEntry(const Command &command)
{
    QString text =
        QStringLiteral(".TP\n.B auxctl %1\n%2.\n.br\nJSON: {\"%3\": %4}\n")
            .arg(troff(callOf(command)), troff(command.summary), command.key, troff(command.shape));
    for (const Option *option : command.allOptions())
        text += QStringLiteral(".br\n.B %1\n%2.\n")
                    .arg(troff(spelled(*option)), troff(option->summary));
    return text;
}

} // namespace

QString resource(const QString &name)
{
    QFile file(QStringLiteral(":/auxctl/") + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

QString overview(const QStringList &words)
{
    QStringList lines{"auxctl COMMAND [OPTION...] [ARGUMENT...]", "",
                      "Settings, files, containers and the system of a terminal.", "", "Commands:"};
    for (const Command &command : commands()) {
        if (QString(command.name).split(' ').mid(0, words.size()) == words)
            lines += entry(callOf(command), command.summary);
    }
    lines += {"",
              "Options of every command:",
              optionLines(commonOptions()),
              "",
              "auxctl help COMMAND tells more of one.",
              "Exit status: 0 done, 1 failed, 2 wrong call, 3 a check said no."};
    return lines.join('\n');
}

QString helpFor(const Command &command)
{
    const QString json =
        wrapped(QStringLiteral("JSON: {\"%1\": %2}").arg(command.key, command.shape), 0);
    QStringList parts{"auxctl " + callOf(command), wrapped(command.summary, 0),
                      optionLines(commonOptions()), json};
    const QString own = optionLines(command.allOptions());
    if (!own.isEmpty())
        parts.insert(2, own);
    return parts.join(QStringLiteral("\n\n"));
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
    return resource(QStringLiteral("auxctl.1"))
        .replace("@VERSION@", aux::SystemInfo::getVersion())
        .replace("@LOCATIONS@", locationNames().join(", "))
        .replace("@AREAS@", areaNames().join(", "))
        .replace("@COMMANDS@", entries)
        .replace("@OPTIONS@", common)
        .trimmed();
}

} // namespace auxctl
