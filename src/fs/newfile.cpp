// SPDX-License-Identifier: MIT
#include "fs/newfile.h"
#include "error/failure.h"
#include "fs/regularfile.h"
#include "fs/storage.h"

#include <QFileInfo>

#include <cerrno>
#include <cstdio>

#include <unistd.h>

namespace aux
{

namespace
{

QString directoryOf(const QString &path)
{
    return QFileInfo(path).absolutePath();
}

} // namespace

/// A device or a pipe must not be replaced by a file, and a directory that cannot be opened cannot
/// be fsynced.
bool NewFile::mayTakeName()
{
    const QFileInfo info(m_path);
    if (m_path.contains(QChar::Null)) // Qt would take a name up to there
        return failed(EINVAL);
    if (info.fileName().isEmpty() || (info.exists() && !info.isFile()))
        return failed(notRegular);
    return ::access(QFile::encodeName(directoryOf(m_path)).constData(), R_OK) == 0 || failed(errno);
}

bool NewFile::open()
{
    if (!mayTakeName())
        return false;
    m_file.setFileTemplate(directoryOf(m_path) + QStringLiteral("/.libaux-XXXXXX"));
    return m_file.open() || failed(m_file.errorString());
}

bool NewFile::hasRoom(int bytes)
{
    const QByteArray block(bytes, '\0');
    ::lseek(handle(), 0, SEEK_END);
    const ssize_t written = ::write(handle(), block.constData(), static_cast<size_t>(block.size()));
    return written == block.size() || failed(written < 0 ? errno : ENOSPC);
}

bool NewFile::commit()
{
    if (!m_file.flush() || ::fsync(handle()) != 0)
        return failed(errno);
    // Gets a name by this, which the file then leaves: there is nothing left to be removed.
    const QByteArray temporary = QFile::encodeName(m_file.fileName());
    if (std::rename(temporary.constData(), QFile::encodeName(m_path).constData()) != 0)
        return failed(errno);
    return syncDirectory(directoryOf(m_path)) || failed(errno);
}

bool NewFile::failed(const QString &explanation)
{
    m_cause = causeOf(m_path, explanation);
    return false;
}

bool NewFile::failed(int error)
{
    return failed(qt_error_string(error));
}

} // namespace aux
