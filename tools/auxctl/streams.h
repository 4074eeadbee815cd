// SPDX-License-Identifier: MIT
#ifndef AUXCTL_STREAMS_H
#define AUXCTL_STREAMS_H

#include "command.h"

#include <QTemporaryDir>

#include <functional>
#include <memory>

namespace auxctl
{

/// Runs the function with the path of the file that an argument names; for "-" of one that holds
/// what standard input gave. With `name`, the last component of the path is this one.
Outcome withInput(const QString &argument, const std::function<Outcome(const QString &)> &function,
                  const QString &name = {});

/// The place that an argument names; for "-" a temporary one that goes to standard output.
class OutputPlace
{
public:
    explicit OutputPlace(const Invocation &invocation, int index, const QString &fallback = {});

    [[nodiscard]] bool isStandardOutput() const { return m_directory != nullptr; }
    /// Why the result cannot go there.
    [[nodiscard]] const aux::Error &error() const { return m_error; }
    /// The argument as a directory.
    [[nodiscard]] QString directory() const;
    /// The argument as a file.
    [[nodiscard]] QString file() const;

    /// Copies the file to standard output where it is to go there and says nothing else, else
    /// returns the outcome as it is.
    [[nodiscard]] Outcome deliver(const QString &path, Outcome outcome) const;

private:
    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_argument;
    aux::Error m_error;
};

} // namespace auxctl

#endif
