// SPDX-License-Identifier: MIT
#include "streams.h"

#include "fs/fileidentity.h"
#include "fs/progress.h"
#include "output.h"
#include "progress.h"
#include "supervisor.h"

#include <QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

namespace auxctl
{

namespace
{

const QString standardStream = QStringLiteral("-");

/// Hands on what is left to read; false where that cannot be, or where it is not taken.
bool readPieces(QFile &file, const aux::TakePiece &take)
{
    QByteArray piece(1 << 16, Qt::Uninitialized);
    qint64 length = 0;
    while ((length = file.read(piece.data(), piece.size())) > 0) {
        if (!take(piece.constData(), length))
            return false;
    }
    return length == 0;
}

/// The mode that the umask leaves.
mode_t commonMode()
{
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

} // namespace

constexpr Switch forceOption{"force", "Overwrite an existing file"};

bool Input::isStream() const
{
    return m_argument == standardStream;
}

QString Input::name() const
{
    return isStream() ? QStringLiteral("standard input") : m_argument;
}

QString Input::path()
{
    if (!isStream())
        return m_argument;
    if (m_copy == nullptr)
        keep();
    return m_copy->pathWithoutName();
}

void Input::keep()
{
    m_copy = std::make_unique<aux::NewFile>();
    const auto require = [this](bool isDone) {
        if (!isDone)
            fail(QStringLiteral("cannot keep standard input: ") + m_copy->cause());
        return true;
    };
    require(m_copy->open());
    read([&](const char *data, qint64 length) {
        return require(m_copy->write(QByteArray::fromRawData(data, static_cast<int>(length))));
    });
    require(m_copy->commit());
    nameFile(m_copy->pathWithoutName(), name());
}

void keep(const QByteArray &content, const QString &name, aux::NewFile &file)
{
    if (!file.open() || !file.write(content) || !file.commit())
        fail(QStringLiteral("cannot keep %1: %2").arg(name, file.cause()));
    nameFile(file.pathWithoutName(), name);
}

void Input::open(QFile &file) const
{
    file.setFileName(name());
    if (!(isStream() ? file.open(STDIN_FILENO, QIODevice::ReadOnly)
                     : file.open(QIODevice::ReadOnly)))
        failOn("open", file);
}

void Input::read(const aux::TakePiece &take) const
{
    QFile file;
    open(file);
    const Progress progress(name(), file.size());
    const auto takeAndTell = [&take](const char *data, qint64 length) {
        const bool isTaken = take(data, length);
        aux::advance(length);
        return isTaken;
    };
    if (!readPieces(file, takeAndTell))
        failOn("read", file);
}

Output::Output(const Call &call, const QString &argument, Access access,
               const std::function<void()> &cleanUp)
    : m_path(argument)
{
    const bool isForced = call.has(forceOption);
    const bool isOccupied = !isStream() && aux::isOccupied(argument);
    if (isStream() && call.has(jsonOption))
        misuse("standard output takes either the file or --json");
    if (isOccupied && !isForced)
        fail(QStringLiteral("%1 exists already, --force overwrites it").arg(argument));
    if (isOccupied && !QFileInfo(argument).isFile())
        fail(QStringLiteral("%1 is no regular file").arg(argument));
    using Existing = aux::NewFile::Existing;
    m_file = isStream() ? std::make_unique<aux::NewFile>()
                        : std::make_unique<aux::NewFile>(argument, isForced ? Existing::Replaced
                                                                            : Existing::Kept);
    open(access);
    supervise([this, &cleanUp] {
        m_file->removeTemporaryName();
        cleanUp();
    });
}

void Output::open(Access access)
{
    if (!m_file->open() ||
        (access == Access::Common && fchmod(m_file->handle(), commonMode()) != 0))
        fail(QStringLiteral("cannot make ") + m_file->cause());
    nameFile(m_file->pathWithoutName(), m_file->path());
}

bool Output::isStream() const
{
    return m_path == standardStream;
}

void Output::write(const QByteArray &content)
{
    if (!m_file->write(content))
        fail(QStringLiteral("cannot write ") + m_file->cause());
}

Result Output::commit(const Result &result)
{
    if (!m_file->commit())
        fail(QStringLiteral("cannot write ") + m_file->cause());
    return committed(result);
}

Result Output::committed(const Result &result)
{
    if (!isStream())
        return result;
    QFile file(m_file->pathWithoutName());
    if (!file.open(QIODevice::ReadOnly) || !readPieces(file, writeOut) || !flushOut())
        fail(cannotWriteOut());
    Result silent;
    silent.warnings = result.warnings;
    return silent;
}

} // namespace auxctl
