// SPDX-License-Identifier: MIT
#include "outcome.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>
#include <QVariant>

#include <algorithm>

namespace auxctl
{

namespace
{

QJsonObject toObject(const Record &fields)
{
    QJsonObject object;
    for (const auto &[name, value] : fields)
        object.insert(name, value);
    return object;
}

/// What nests is printed below its name, two blanks deeper.
QString nestedText(const QJsonValue &value)
{
    QString text;
    const auto addItem = [&text](const QString &label, const QJsonValue &item) {
        const QString line = (label + ' ' + valueText(item)).trimmed();
        text += QString('\n' + line).replace('\n', QStringLiteral("\n  "));
    };
    if (value.isArray()) {
        for (const auto &item : value.toArray())
            addItem({}, item);
    }
    const QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member)
        addItem(member.key() + ':', member.value());
    return text.isEmpty() ? QStringLiteral("-") : text;
}

} // namespace

QString valueText(const QJsonValue &value)
{
    if (value.isArray() || value.isObject())
        return nestedText(value);
    if (value.isDouble())
        return QString::number(value.toDouble(), 'f', 0);
    return printable(value.toVariant().toString());
}

QString printable(QString text)
{
    for (int index = text.size() - 1; index >= 0; --index) {
        const QChar letter = text[index];
        if (letter.category() == QChar::Other_Control)
            text.replace(index, 1,
                         QStringLiteral("\\x%1").arg(letter.unicode(), 2, 16, QLatin1Char('0')));
    }
    return text;
}

QString alignedText(const QVector<QStringList> &rows)
{
    QVector<int> widths;
    for (const QStringList &row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (int column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], row[column].size());
    }
    QStringList lines;
    for (const QStringList &row : rows) {
        QString line;
        for (int column = 0; column + 1 < row.size(); ++column)
            line += row[column].leftJustified(widths[column] + 2);
        line += row.last();
        while (line.endsWith(' '))
            line.chop(1);
        lines += line;
    }
    return lines.join('\n');
}

Outcome record(const Record &fields)
{
    Outcome outcome;
    outcome.json = toObject(fields);
    QVector<QStringList> rows;
    for (const auto &[name, value] : fields) {
        const QString text = valueText(value);
        rows += QStringList{name + ':', text.isEmpty() ? QStringLiteral("-") : text};
    }
    outcome.text = alignedText(rows).replace(QStringLiteral(" \n"), QStringLiteral("\n"));
    return outcome;
}

Outcome table(const QVector<Record> &rows)
{
    Outcome outcome;
    QJsonArray array;
    QVector<QStringList> lines;
    for (const Record &fields : rows) {
        array += toObject(fields);
        QStringList names;
        QStringList values;
        for (const auto &[name, value] : fields) {
            names += name.toUpper();
            values += valueText(value);
        }
        if (lines.isEmpty())
            lines += names;
        lines += values;
    }
    outcome.json = array;
    outcome.text = alignedText(lines);
    return outcome;
}

aux::Error problem(const QString &message, ExitStatus status)
{
    return aux::ErrorData(ownDomain, QString(message), static_cast<unsigned int>(status));
}

aux::Error fileProblem(const char *action, const QFile &file)
{
    return problem(
        QStringLiteral("cannot %1 %2: %3").arg(action, file.fileName(), file.errorString()));
}

Outcome failed(aux::Error error)
{
    const bool isOwn = error.getDomain() == ownDomain;
    const auto status = isOwn ? static_cast<ExitStatus>(error.getId()) : ExitStatus::Failed;
    return {status, std::move(error), {}, {}};
}

Outcome failed(const QString &message)
{
    return failed(problem(message));
}

Outcome misused(const QString &message)
{
    return failed(problem(message, ExitStatus::Usage));
}

Outcome answered(bool yes, Outcome outcome)
{
    if (!yes)
        outcome.status = ExitStatus::No;
    return outcome;
}

} // namespace auxctl
