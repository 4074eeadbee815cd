// SPDX-License-Identifier: MIT
#ifndef AUXCTL_STREAMS_H
#define AUXCTL_STREAMS_H

#include "result.h"

#include <QTemporaryDir>

#include <memory>

namespace auxctl
{

/// The file that an argument names; for "-" one that holds what standard input gave.
class Input
{
public:
    /// With `name`, the last component of the path is this one.
    explicit Input(const QString &argument, const QString &name = {});

    [[nodiscard]] const QString &path() const { return m_path; }

private:
    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_path;
};

class Call;

/// The place that an argument names; for "-" a temporary one that goes to standard output.
class OutputPlace
{
public:
    explicit OutputPlace(const Call &call, int index, const QString &fallback = {});

    [[nodiscard]] bool isStandardOutput() const { return m_directory != nullptr; }
    /// The argument as a directory.
    [[nodiscard]] QString directory() const;
    /// The argument as a file.
    [[nodiscard]] QString file() const;

    /// Copies the file to standard output where it is to go there and says nothing else, else
    /// returns the result as it is.
    [[nodiscard]] Result deliver(const QString &path, Result result) const;

private:
    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_argument;
};

} // namespace auxctl

#endif
