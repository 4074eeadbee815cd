// SPDX-License-Identifier: MIT
#include "failure.h"

#include <QPair>
#include <QRegularExpression>
#include <QVector>

#include <algorithm>
#include <numeric>
#include <vector>

namespace auxctl
{

namespace
{

QVector<QPair<QString, QString>> &fileNames()
{
    static QVector<QPair<QString, QString>> names;
    return names;
}

[[noreturn]] void raise(ExitStatus status, const QString &message)
{
    throw Failure{status, ownError(status, message)};
}

/// The number of letters to insert, remove or replace (Levenshtein distance).
int distance(const QString &a, const QString &b)
{
    const auto columns = static_cast<std::size_t>(b.size());
    std::vector<int> row(columns + 1);
    std::iota(row.begin(), row.end(), 0);
    for (const QChar letter : a) {
        int diagonal = row[0]++;
        for (std::size_t column = 1; column <= columns; ++column) {
            const int replaced = diagonal + (letter == b[static_cast<int>(column) - 1] ? 0 : 1);
            diagonal = row[column];
            row[column] = std::min({row[column] + 1, row[column - 1] + 1, replaced});
        }
    }
    return row.back();
}

} // namespace

aux::Error ownError(ExitStatus status, const QString &message)
{
    return aux::ErrorData(ownDomain, withNames(message), static_cast<unsigned int>(status));
}

void fail(const QString &message)
{
    raise(ExitStatus::Failed, message);
}

void failOn(const char *action, const QFile &file)
{
    fail(QStringLiteral("cannot %1 %2: %3").arg(action, file.fileName(), file.errorString()));
}

void misuse(const QString &message)
{
    raise(ExitStatus::Usage, message);
}

void misuseUnknown(const char *kind, const QString &word, const QStringList &candidates)
{
    const QString nearest = *std::min_element(candidates.begin(), candidates.end(),
                                              [&word](const QString &a, const QString &b) {
                                                  return distance(word, a) < distance(word, b);
                                              });
    constexpr int few = 10;
    const QString all = candidates.size() > few
                            ? QString()
                            : QStringLiteral(" There are %1.").arg(candidates.join(", "));
    misuse(QStringLiteral("unknown %1 \"%2\", did you mean \"%3\"?").arg(kind, word, nearest) +
           all);
}

QString withNames(QString message)
{
    for (const auto &[path, name] : fileNames())
        message.replace(QRegularExpression(QRegularExpression::escape(path) + "\\b"), name);
    return message;
}

void nameFile(const QString &path, const QString &name)
{
    fileNames() += {path, name};
}

aux::Error about(const QString &file, const char *state, aux::Error error)
{
    if (error.hasError() && error.getExtraData().isEmpty())
        error.setExtraData(QStringLiteral("%1: %2").arg(file, state));
    return error;
}

void checkOn(const QString &file, const char *state, aux::Error error)
{
    check(about(file, state, std::move(error)));
}

void check(aux::Error error)
{
    if (!error.hasError())
        return;
    error.setExtraData(withNames(error.getExtraData()));
    throw Failure{ExitStatus::Failed, std::move(error)};
}

} // namespace auxctl
