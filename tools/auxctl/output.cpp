// SPDX-License-Identifier: MIT
#include "output.h"

#include "diagnostics.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>
#include <iostream>
#include <sstream>

#include <fcntl.h>
#include <unistd.h>

namespace auxctl
{

namespace
{

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

/// This program's own errors the way programs put them, those of the library as it prints them.
void printError(const aux::Error &error)
{
    std::ostringstream chain;
    if (error.getDomain() == ownDomain)
        chain << ownDomain << ": " << error.getMsg().toStdString();
    else
        chain << error;
    const bool colour = errorTakesColour();
    std::cerr << (colour ? "\033[31m" : "") << chain.str() << (colour ? "\033[0m" : "") << '\n';
}

void printDiagnostics()
{
    for (const QString &line : takeDiagnostics())
        std::cerr << line.toStdString() << '\n';
}

bool writeAll(const QByteArray &bytes)
{
    std::signal(SIGPIPE, SIG_DFL); // QProcess ignores it; a reader that has enough is no failure
    const auto size = static_cast<std::size_t>(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, standardOutput()) == size &&
           std::fflush(standardOutput()) == 0;
}

QByteArray document(const QString &key, const QJsonValue &value)
{
    return QJsonDocument(QJsonObject{{key, value}}).toJson();
}

/// The status, once what goes with it is on standard output.
ExitStatus afterWriting(const QByteArray &bytes, ExitStatus status)
{
    if (writeAll(bytes))
        return status;
    std::cerr << ownDomain << ": cannot write to standard output\n";
    return ExitStatus::Failed;
}

} // namespace

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
    if (format.showsDiagnostics || result.isNo)
        printDiagnostics();
    const QByteArray text = result.text.isEmpty() ? QByteArray() : result.text.toUtf8() + '\n';
    return afterWriting(format.isJson ? document(format.key, result.json) : text,
                        result.isNo ? ExitStatus::No : ExitStatus::Done);
}

ExitStatus print(const Failure &failure, const Format &format)
{
    if (format.showsDiagnostics || failure.status == ExitStatus::No)
        printDiagnostics();
    printError(failure.error);
    return afterWriting(format.isJson ? document("error", toJson(failure.error)) : QByteArray(),
                        failure.status);
}

} // namespace auxctl
