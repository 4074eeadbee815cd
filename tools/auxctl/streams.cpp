// SPDX-License-Identifier: MIT
#include "streams.h"

#include "fs/fileidentity.h"
#include "fs/storage.h"
#include "output.h"
#include "supervisor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace auxctl
{

namespace
{

const QString standardStream = QStringLiteral("-");

/// Copies what is left to read; false where either of them fails.
bool copyAll(QFile &from, QFile &to)
{
    QByteArray piece(1 << 16, Qt::Uninitialized);
    qint64 length = 0;
    while ((length = from.read(piece.data(), piece.size())) > 0) {
        if (to.write(piece.constData(), length) != length)
            return false;
    }
    return length == 0 && to.flush();
}

/// A file without a name, which holds what standard input gave.
std::unique_ptr<QTemporaryFile> unnamedCopy()
{
    auto copy = std::make_unique<QTemporaryFile>();
    QFile input;
    if (!copy->open() || !input.open(STDIN_FILENO, QIODevice::ReadOnly) || !copyAll(input, *copy))
        fail(QStringLiteral("cannot keep standard input: ") + copy->errorString());
    return copy;
}

/// The file is on the storage under its new name.
bool renameDurably(const QString &from, const QString &to, unsigned int flags)
{
    const QByteArray source = QFile::encodeName(from);
    const int file = open(source.constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    const bool isFlushed = fsync(file) == 0;
    const int reason = errno;
    close(file);
    errno = reason;
    return isFlushed &&
           renameat2(AT_FDCWD, source.constData(), AT_FDCWD, QFile::encodeName(to).constData(),
                     flags) == 0 &&
           aux::syncDirectory(QFileInfo(to).absolutePath());
}

} // namespace

constexpr Switch forceOption{"force", "Overwrite an existing file"};

Input::Input(const QString &argument) : m_argument(argument), m_path(argument)
{
    if (!isStream())
        return;
    m_copy = unnamedCopy();
    m_path = QStringLiteral("/proc/self/fd/%1").arg(m_copy->handle());
}

bool Input::isStream() const
{
    return m_argument == standardStream;
}

QString Input::name() const
{
    return isStream() ? QStringLiteral("standard input") : m_argument;
}

Output::Output(const Call &call, const QString &argument, const std::function<void()> &cleanUp)
    : m_path(argument), m_isForced(call.has(forceOption))
{
    const bool isOccupied = argument != standardStream && aux::isOccupied(argument);
    if (argument == standardStream && call.has(jsonOption))
        misuse("standard output takes either the file or --json");
    if (isOccupied && !m_isForced)
        fail(QStringLiteral("%1 exists already, --force overwrites it").arg(argument));
    if (isOccupied && !QFileInfo(argument).isFile())
        fail(QStringLiteral("%1 is no regular file").arg(argument));
    makeTemporaryPath();
    const QString directory = isStream() ? m_directory->path() : QString();
    supervise([cleanUp, directory, temporary = m_temporaryPath] {
        QFile::remove(temporary);
        QDir().rmdir(directory);
        cleanUp();
    });
}

void Output::makeTemporaryPath()
{
    if (m_path != standardStream) {
        m_temporaryPath =
            QStringLiteral("%1/.auxctl-%2").arg(QFileInfo(m_path).absolutePath()).arg(getpid());
        QFile::remove(m_temporaryPath); // of a process that was killed and had the same number
        return;
    }
    m_directory = std::make_unique<QTemporaryDir>();
    if (!m_directory->isValid())
        fail(QStringLiteral("cannot make a temporary directory: ") + m_directory->errorString());
    m_temporaryPath = m_directory->filePath(QStringLiteral("output"));
}

Output::~Output()
{
    QFile::remove(m_temporaryPath); // gone, where it was committed
}

void Output::rename() const
{
    bool isRenamed = renameDurably(m_temporaryPath, m_path, m_isForced ? 0 : RENAME_NOREPLACE);
    // Not every file system knows how not to replace; that there was none has been seen.
    if (!isRenamed && errno == EINVAL && !m_isForced && !aux::isOccupied(m_path))
        isRenamed = renameDurably(m_temporaryPath, m_path, 0);
    if (!isRenamed)
        fail(QStringLiteral("cannot write %1: %2").arg(m_path, strerror(errno)));
}

Result Output::commit(const Result &result)
{
    if (!isStream()) {
        rename();
        return result;
    }
    std::signal(SIGPIPE, SIG_DFL); // QProcess ignores it; a reader that has enough is no failure
    QFile file(m_temporaryPath);
    QFile output;
    if (!file.open(QIODevice::ReadOnly) || !output.open(standardOutput(), QIODevice::WriteOnly) ||
        !copyAll(file, output))
        fail("cannot write to standard output");
    Result silent;
    silent.warnings = result.warnings;
    return silent;
}

} // namespace auxctl
