// SPDX-License-Identifier: MIT
#include "output.h"

#include "diagnostics.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <iostream>

#include <fcntl.h>
#include <unistd.h>

namespace auxctl
{

namespace
{

constexpr int deepest = 4; // blanks in front of a line

/// This program's own errors the way programs put them, those of the library as it prints them:
/// newest first, each deeper than the one before, and what of the system caused them in the end. A
/// long chain is a list, which would else run off the terminal.
QString chainText(const aux::Error &error)
{
    QStringList lines;
    const auto add = [&lines](const QString &text) {
        lines +=
            QString(std::min<int>(2 * lines.size(), deepest), ' ') + printable(text, STDERR_FILENO);
    };
    for (const auto &entry : error) {
        const bool isOwn = entry.getDomain() == ownDomain;
        const QString line = isOwn ? QStringLiteral("%1: %2").arg(ownDomain, entry.getMsg())
                                   : QStringLiteral("%1 %2 %3")
                                         .arg(entry.getDomain(), entry.getMsg())
                                         .arg(entry.getId());
        add(line);
    }
    if (!error.getExtraData().isEmpty())
        add(error.getExtraData());
    return lines.join('\n');
}

void printLines(const QStringList &lines)
{
    for (const QString &line : lines)
        std::cerr << printable(line, STDERR_FILENO).toStdString() << '\n';
}

void printError(const aux::Error &error)
{
    const bool colour = errorTakesColour();
    std::cerr << (colour ? "\033[31m" : "") << chainText(error).toStdString()
              << (colour ? "\033[0m" : "") << '\n';
}

QJsonObject toObject(const aux::Error &error)
{
    QJsonObject object{{"error", toJson(error)}};
    if (!error.getExtraData().isEmpty())
        object["cause"] = error.getExtraData();
    return object;
}

/// The status, once what goes with it is on standard output.
ExitStatus afterWriting(const QByteArray &bytes, ExitStatus status)
{
    if (writeOut(bytes.constData(), bytes.size()) && flushOut())
        return status;
    std::cerr << ownDomain << ": " << cannotWriteOut().toStdString() << '\n';
    return ExitStatus::Failed;
}

} // namespace

QByteArray jsonText(const QJsonObject &object)
{
    QString text;
    for (const QChar letter : QString::fromUtf8(QJsonDocument(object).toJson())) {
        const bool isPlain = letter == '\n' || !isInvisible(letter);
        text += isPlain ? QString(letter) : QString::asprintf("\\u%04x", letter.unicode());
    }
    return text.toUtf8();
}

QJsonArray toJson(const aux::Error &error)
{
    QJsonArray chain;
    for (const auto &entry : error) {
        chain += QJsonObject{{"domain", entry.getDomain()},
                             {"message", entry.getMsg()},
                             {"id", static_cast<qint64>(entry.getId())}};
    }
    return chain;
}

bool writeOut(const char *data, qint64 length)
{
    std::signal(SIGPIPE, SIG_DFL); // QProcess ignores it; a reader that has enough is no failure
    const auto size = static_cast<std::size_t>(length);
    return std::fwrite(data, 1, size, standardOutput()) == size;
}

bool flushOut()
{
    return std::fflush(standardOutput()) == 0;
}

QString cannotWriteOut()
{
    return QStringLiteral("cannot write to standard output: %1").arg(strerror(errno));
}

std::FILE *standardOutput()
{
    static std::FILE *const output = fdopen(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0), "w");
    return output != nullptr ? output : stdout;
}

void divertOutput()
{
    if (standardOutput() != stdout)
        dup2(STDERR_FILENO, STDOUT_FILENO);
}

bool errorTakesColour()
{
    return isatty(STDERR_FILENO) != 0 && qEnvironmentVariableIsEmpty("NO_COLOR");
}

ExitStatus print(const Result &result, const Format &format)
{
    if (format.showsDiagnostics || result.status == ExitStatus::No)
        printLines(takeDiagnostics());
    for (const aux::Error &error : result.errors)
        printError(error);
    for (const QString &warning : result.warnings)
        printLines({QStringLiteral("%1: warning: %2").arg(ownDomain, warning)});
    const QByteArray text = result.text.isEmpty() ? QByteArray() : result.text.toUtf8() + '\n';
    return afterWriting(format.isJson ? jsonText({{format.key, result.json}}) : text,
                        result.status);
}

ExitStatus print(const Failure &failure, const Format &format)
{
    if (format.showsDiagnostics || failure.status == ExitStatus::No)
        printLines(takeDiagnostics());
    printError(failure.error);
    return afterWriting(format.isJson ? jsonText(toObject(failure.error)) : QByteArray(),
                        failure.status);
}

} // namespace auxctl
