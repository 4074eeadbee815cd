// SPDX-License-Identifier: MIT
#ifndef AUXCTL_FAILURE_H
#define AUXCTL_FAILURE_H

#include <aux/error.h>

#include <QFile>
#include <QString>
#include <QStringList>

#include <utility>

namespace auxctl
{

enum class ExitStatus : int {
    Done = 0,
    Failed = 1, ///< the library, or this program, could not do it
    Usage = 2,  ///< the call was wrong, nothing was done
    No = 3,     ///< a check was made, and its answer is no
};

/// Ends a command: thrown wherever it cannot go on, caught once, in main.
struct Failure {
    ExitStatus status;
    aux::Error error;
};

/// The domain of the errors of this program.
constexpr const char *ownDomain = "auxctl";

/// An error of that domain, with the status for an id.
aux::Error ownError(ExitStatus status, const QString &message);

/// This program, or the system, could not do it.
[[noreturn]] void fail(const QString &message);
/// The same, where the file could not be opened or read, which is what `action` says.
[[noreturn]] void failOn(const char *action, const QFile &file);
/// The call was wrong.
[[noreturn]] void misuse(const QString &message);
/// The call names something that is none of the candidates; `kind` is what it should have named.
[[noreturn]] void misuseUnknown(const char *kind, const QString &word,
                                const QStringList &candidates);

/// Lets messages about a file call it what people know it as.
void nameFile(const QString &path, const QString &name);

/// A message, or a path alone, with those names.
QString withNames(QString message);

/// Fails where the library did.
void check(aux::Error error);
/// The failure; where the library does not say what has caused it, the file is named, and what it
/// is now, "not unpacked".
aux::Error about(const QString &file, const char *state, aux::Error error);
/// Fails with that where the library did.
void checkOn(const QString &file, const char *state, aux::Error error);
/// What the library returned along with its error; fails where it did.
template <typename Value>
Value checked(std::pair<aux::Error, Value> result)
{
    check(std::move(result.first));
    return std::move(result.second);
}

} // namespace auxctl

#endif
