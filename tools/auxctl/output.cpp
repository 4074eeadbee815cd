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

QByteArray document(const Outcome &outcome, const QString &key)
{
    const QJsonObject object = outcome.error.hasError()
                                   ? QJsonObject{{"error", toJson(outcome.error)}}
                                   : QJsonObject{{key, outcome.json}};
    return QJsonDocument(object).toJson();
}

QByteArray result(const Outcome &outcome, const Format &format)
{
    if (format.isJson)
        return document(outcome, format.key);
    return outcome.text.isEmpty() ? QByteArray() : outcome.text.toUtf8() + '\n';
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

bool writeAll(const QByteArray &bytes)
{
    std::signal(SIGPIPE, SIG_DFL); // QProcess ignores it; a reader that has enough is no failure
    const auto size = static_cast<std::size_t>(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, standardOutput()) == size &&
           std::fflush(standardOutput()) == 0;
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

ExitStatus print(const Outcome &outcome, const Format &format)
{
    const QStringList diagnostics = takeDiagnostics();
    if (format.showsDiagnostics || outcome.status == ExitStatus::No) {
        for (const QString &line : diagnostics)
            std::cerr << line.toStdString() << '\n';
    }
    if (outcome.error.hasError())
        printError(outcome.error);
    if (!writeAll(result(outcome, format))) {
        printError(problem(QStringLiteral("cannot write to standard output")));
        return ExitStatus::Failed;
    }
    return outcome.status;
}

} // namespace auxctl
