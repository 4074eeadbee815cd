// SPDX-License-Identifier: MIT
#ifndef AUXCTL_RESULT_H
#define AUXCTL_RESULT_H

#include <QJsonValue>
#include <QPair>
#include <QString>
#include <QVector>

namespace auxctl
{

/// What a command has to say, once for programs and once for people.
struct Result {
    QJsonValue json;   // printed under the command's key
    QString text;      // without a line feed at its end
    bool isNo = false; // a check was made, and its answer is no
};

/// A named list of values in the order of printing.
using Record = QVector<QPair<QString, QJsonValue>>;

/// The text itself.
Result plainText(const QString &text);
/// One line per value, the values aligned.
Result record(const Record &fields);
/// One line per record under a line of the names, the columns aligned.
Result table(const QVector<Record> &rows);
/// The same result, with the answer of a check.
Result answered(bool yes, Result result);

/// Lines of aligned columns.
QString alignedText(const QVector<QStringList> &rows);
/// Text without control characters, which would act on the terminal: "\\x1b" for an escape.
QString printable(QString text);
/// A value the way it is printed and typed.
QString valueText(const QJsonValue &value);

} // namespace auxctl

#endif
