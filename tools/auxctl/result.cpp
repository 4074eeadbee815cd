// SPDX-License-Identifier: MIT
#include "result.h"

#include "output.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>
#include <QVariant>

#include <algorithm>

#include <unistd.h>

namespace auxctl
{

namespace
{

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

QJsonObject toObject(const Record &fields)
{
    QJsonObject object;
    for (const auto &[name, value] : fields)
        object.insert(name, value);
    return object;
}

QString valueText(const QJsonValue &value)
{
    if (value.isArray() || value.isObject())
        return nestedText(value);
    if (value.isDouble())
        return QString::number(value.toDouble(), 'f', 0);
    return printable(value.toVariant().toString());
}

QString timeText(const QDateTime &moment)
{
    return moment.toUTC().toString(Qt::ISODate);
}

bool isInvisible(QChar letter)
{
    switch (letter.category()) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

QString printable(const QString &text, int descriptor)
{
    if (isatty(descriptor) == 0)
        return text;
    QString visible;
    for (const QChar letter : text) {
        const int code = letter.unicode();
        if (!isInvisible(letter))
            visible += letter;
        else
            visible += QString::asprintf(code < 0x100 ? "\\x%02x" : "\\u%04x", code);
    }
    return visible;
}

QString printable(const QString &text)
{
    return printable(text, fileno(standardOutput()));
}

QString alignedText(const QVector<QStringList> &rows)
{
    QVector<int> widths;
    for (const QStringList &row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (int column = 0; column < row.size(); ++column)
            widths[column] = std::max<int>(widths[column], row[column].size());
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

Result plainText(const QString &text)
{
    return {text, printable(text)};
}

Result textLines(const QStringList &texts)
{
    QStringList lines;
    for (const QString &text : texts)
        lines += printable(text);
    return {QJsonArray::fromStringList(texts), lines.join('\n')};
}

Result document(const QString &text)
{
    return {text, text};
}

Result record(const Record &fields)
{
    Result result;
    result.json = toObject(fields);
    QVector<QStringList> rows;
    for (const auto &[name, value] : fields) {
        const QString text = valueText(value);
        rows += QStringList{name + ':', text.isEmpty() ? QStringLiteral("-") : text};
    }
    result.text = alignedText(rows).replace(QStringLiteral(" \n"), QStringLiteral("\n"));
    return result;
}

Result table(const QVector<Record> &rows)
{
    Result result;
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
    result.json = array;
    result.text = alignedText(lines);
    return result;
}

Result answered(bool yes, Result result)
{
    if (!yes)
        result.status = ExitStatus::No;
    return result;
}

} // namespace auxctl
