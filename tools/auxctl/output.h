// SPDX-License-Identifier: MIT
#ifndef AUXCTL_OUTPUT_H
#define AUXCTL_OUTPUT_H

#include "failure.h"
#include "result.h"

#include <QJsonArray>

#include <cstdio>

namespace auxctl
{

struct Format {
    bool isJson = false;
    QString key; // of the result in JSON
    bool showsDiagnostics = false;
};

/// Prints a result or a failure; the exit status of the program, which is Failed where printing
/// fails.
///
/// Standard output gets the result, or with JSON one document: {KEY: RESULT} or {"error": [...]}.
/// Standard error gets the chain of a failure, newest first, the reason of an answer no, and the
/// library's diagnostic lines where they are asked for.
ExitStatus print(const Result &result, const Format &format);
ExitStatus print(const Failure &failure, const Format &format);

/// A document in lines, in which nothing acts on a terminal.
QByteArray jsonText(const QJsonObject &object);

/// The entries of an error, newest first.
QJsonArray toJson(const aux::Error &error);

/// @{
/// Write to where the result goes; false where that fails.
bool writeOut(const char *data, qint64 length);
bool flushOut();
/// @}
/// What to say then, at once.
QString cannotWriteOut();

/// Where the result goes. Standard output itself leads to standard error after divertOutput(), so
/// that what the programs print which the library runs does not get into the result.
std::FILE *standardOutput();
void divertOutput();

/// Returns whether standard error takes colours: a terminal, and NO_COLOR is not set.
bool errorTakesColour();

} // namespace auxctl

#endif
