// SPDX-License-Identifier: MIT
#ifndef AUXCTL_STREAMS_H
#define AUXCTL_STREAMS_H

#include "command.h"

#include <QTemporaryDir>
#include <QTemporaryFile>

#include <functional>
#include <memory>

namespace auxctl
{

/// The file that an argument names; for "-" an unnamed one that holds what standard input gave.
class Input
{
public:
    explicit Input(const QString &argument);

    /// Where it can be read.
    [[nodiscard]] const QString &path() const { return m_path; }
    [[nodiscard]] bool isStream() const;
    /// What people call it.
    [[nodiscard]] QString name() const;

private:
    QString m_argument;
    QString m_path;
    std::unique_ptr<QTemporaryFile> m_copy;
};

/// Without it, no file is replaced.
extern const Switch forceOption;

/// The file that a command makes: it gets its name, or goes to standard output, only when it is
/// complete. Until then it is a temporary one, of which nothing is left where a signal ends the
/// program.
class Output
{
public:
    /// Fails where a file of that name exists and --force is not given, a misuse for "-" with
    /// --json. What else is to be cleaned up after a signal, `cleanUp` does.
    Output(
        const Call &call, const QString &argument, const std::function<void()> &cleanUp = [] {});
    ~Output();
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;

    /// Where it is to be written, a name that is not there yet.
    [[nodiscard]] const QString &temporaryPath() const { return m_temporaryPath; }
    /// What it will be called.
    [[nodiscard]] const QString &path() const { return m_path; }

    /// Gives the file its name and returns the result; of a file that goes to standard output an
    /// empty one.
    Result commit(const Result &result);

private:
    void makeTemporaryPath();
    void rename() const;
    [[nodiscard]] bool isStream() const { return m_directory != nullptr; }

    QString m_path;
    bool m_isForced;
    QString m_temporaryPath;
    std::unique_ptr<QTemporaryDir> m_directory; // for standard output
};

} // namespace auxctl

#endif
