// SPDX-License-Identifier: MIT
#ifndef AUXCTL_RESULT_H
#define AUXCTL_RESULT_H

#include "failure.h"

#include <QDateTime>
#include <QJsonObject>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

namespace auxctl
{

/// What a command has to say, once for programs and once for people.
struct Result {
    QJsonValue json; // printed under the command's key
    QString text;    // without a line feed at its end
    ExitStatus status = ExitStatus::Done;
    QStringList warnings = {};       // for people, on standard error
    QVector<aux::Error> errors = {}; // of a part of what was asked for
};

/// A named list of values in the order of printing.
using Record = QVector<QPair<QString, QJsonValue>>;

QJsonObject toObject(const Record &fields);

/// One text, which may come from outside.
Result plainText(const QString &text);
/// One line per text, which may come from outside.
Result textLines(const QStringList &texts);
/// A text of many lines that this program has made.
Result document(const QString &text);
/// One line per value, the values aligned.
Result record(const Record &fields);
/// One line per record under a line of the names, the columns aligned.
Result table(const QVector<Record> &rows);
/// The same result, with the answer of a check.
Result answered(bool yes, Result result);

/// Lines of aligned columns.
QString alignedText(const QVector<QStringList> &rows);
/// Text from outside for a stream: on a terminal its control characters, on which that would act,
/// and those that turn the direction of writing are made visible, as "\\x1b" for an escape. Every
/// other stream gets it as it is.
QString printable(const QString &text, int descriptor);
/// The same for the result's stream.
QString printable(const QString &text);
/// Whether a letter cannot be seen, but acts on what shows it.
bool isInvisible(QChar letter);
/// A moment in UTC (ISO 8601); nothing for none.
QString timeText(const QDateTime &moment);
/// A value the way it is printed and typed.
QString valueText(const QJsonValue &value);

} // namespace auxctl

#endif
