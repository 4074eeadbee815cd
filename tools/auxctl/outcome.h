// SPDX-License-Identifier: MIT
#ifndef AUXCTL_OUTCOME_H
#define AUXCTL_OUTCOME_H

#include <aux/error.h>

#include <QFile>
#include <QJsonValue>
#include <QPair>
#include <QString>
#include <QVector>

namespace auxctl
{

enum class ExitStatus : int {
    Done = 0,
    Failed = 1, ///< the library, or this program, could not do it
    Usage = 2,  ///< the call was wrong, nothing was done
    No = 3,     ///< a check was made, and its answer is no
};

/// What a command has to say, once for programs and once for people.
struct Outcome {
    ExitStatus status = ExitStatus::Done;
    aux::Error error; // why it failed, was refused or is wrong
    QJsonValue json;  // printed under the command's key
    QString text;     // without a line feed at its end
};

/// A named list of values in the order of printing.
using Record = QVector<QPair<QString, QJsonValue>>;

/// One line per value, the values aligned.
Outcome record(const Record &fields);
/// One line per record under a line of the names, the columns aligned.
Outcome table(const QVector<Record> &rows);
/// Lines of aligned columns.
QString alignedText(const QVector<QStringList> &rows);
/// Text without control characters, which would act on the terminal: "\\x1b" for an escape.
QString printable(QString text);
/// A value the way it is printed and typed.
QString valueText(const QJsonValue &value);

/// The domain of the errors of this program.
constexpr const char *ownDomain = "auxctl";

/// An entry of this program's own; its id is the exit status that goes with it.
aux::Error problem(const QString &message, ExitStatus status = ExitStatus::Failed);

/// Why the file could not be opened or read, which is what `action` says.
aux::Error fileProblem(const char *action, const QFile &file);

/// The outcome that goes with an error, one of the library or a problem().
Outcome failed(aux::Error error);
Outcome failed(const QString &message);
/// The call was wrong.
Outcome misused(const QString &message);
/// The outcome where a check said yes, else the same with the answer no.
Outcome answered(bool yes, Outcome outcome);

} // namespace auxctl

#endif
