// SPDX-License-Identifier: MIT
#ifndef AUXCTL_STREAMS_H
#define AUXCTL_STREAMS_H

#include "command.h"
#include "fs/newfile.h"
#include "fs/regularfile.h"

#include <QFile>

#include <functional>
#include <memory>
#include <utility>

namespace auxctl
{

/// The file that an argument names; for "-" standard input, which is kept in a file without a name
/// where it is needed under a path.
class Input
{
public:
    explicit Input(QString argument) : m_argument(std::move(argument)) {}

    [[nodiscard]] bool isStream() const;
    /// What people call it.
    [[nodiscard]] QString name() const;
    /// Where it can be read, also more than once.
    [[nodiscard]] QString path();
    /// Opens it to read it once, where it is; fails where that cannot be.
    void open(QFile &file) const;
    /// Reads all of it, piece by piece; fails where that cannot be.
    void read(const aux::TakePiece &take) const;

private:
    void keep();

    QString m_argument;
    std::unique_ptr<aux::NewFile> m_copy;
};

/// Keeps a text in a file without a name, which people know by this one.
void keep(const QByteArray &content, const QString &name, aux::NewFile &file);

/// Without it, no file is replaced.
extern const Switch forceOption;

enum class Access {
    Own,    ///< nobody else's to read
    Common, ///< everybody's, as far as the umask lets them
};

/// The file that a command makes: it gets its name, or goes to standard output, only when it is
/// complete. Until then it has no name, or on a file system that cannot do that a temporary one,
/// which is gone where a signal ends the program.
class Output
{
public:
    /// Fails where a file of that name exists and --force is not given, or where it cannot be made,
    /// a misuse for "-" with --json. What else is to be cleaned up after a signal, `cleanUp` does.
    Output(
        const Call &call, const QString &argument, Access access,
        const std::function<void()> &cleanUp = [] {});

    /// The file that is to be written, which is open.
    [[nodiscard]] aux::NewFile &file() { return *m_file; }
    /// What it will be called.
    [[nodiscard]] const QString &path() const { return m_path; }

    /// Writes so much of it.
    void write(const QByteArray &content);
    /// Gives the file its name and returns the result; of a file that goes to standard output an
    /// empty one.
    Result commit(const Result &result);
    /// The same for a file that the library has committed.
    Result committed(const Result &result);

private:
    [[nodiscard]] bool isStream() const;
    void open(Access access);

    QString m_path;
    std::unique_ptr<aux::NewFile> m_file;
};

} // namespace auxctl

#endif
