// SPDX-License-Identifier: MIT
#include "fs/newfile.h"
#include "error/failure.h"
#include "fs/fileidentity.h"
#include "fs/regularfile.h"
#include "fs/storage.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>

#include <unistd.h>

namespace aux
{

namespace
{

const QString temporaryName = QStringLiteral(".libaux-");

QString directoryOf(const QString &path)
{
    return QFileInfo(path).absolutePath();
}

} // namespace

NewFile::NewFile() : NewFile(QDir::tempPath() + QLatin1Char('/'), false) {}

QString NewFile::pathWithoutName() const
{
    return QStringLiteral("/proc/self/fd/%1").arg(handle());
}

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
    if (m_file.isOpen())
        return true;
    if (m_isNamed && !mayTakeName())
        return false;
    m_file.setFileTemplate(directoryOf(m_path) + QLatin1Char('/') + temporaryName +
                           QStringLiteral("XXXXXX"));
    if (!m_file.open())
        return failed(m_file.errorString());
    if (!m_isNamed) // where the file system has given it one
        QFile::remove(QFile::symLinkTarget(pathWithoutName()));
    return true;
}

bool NewFile::write(const QByteArray &content)
{
    return m_file.write(content) == content.size() || failed(m_file.errorString());
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
    if (!m_file.flush() || (m_isNamed && ::fsync(handle()) != 0))
        return failed(errno);
    if (!m_isNamed)
        return true;
    return rename() && (syncDirectory(directoryOf(m_path)) || failed(errno));
}

bool NewFile::rename()
{
    // Gets a name by this, which the file then leaves: there is nothing left to be removed.
    const QString temporary = m_file.fileName();
    if (m_existing == Existing::Kept) {
        const int error = renameWithoutReplacing(temporary, m_path);
        return error == 0 || failed(error);
    }
    return std::rename(QFile::encodeName(temporary).constData(),
                       QFile::encodeName(m_path).constData()) == 0 ||
           failed(errno);
}

void NewFile::removeTemporaryName() const
{
    const QDir directory(directoryOf(m_path));
    for (const QString &name :
         directory.entryList({temporaryName + QLatin1Char('*')}, QDir::Files | QDir::Hidden)) {
        if (isSameFile(directory.filePath(name), pathWithoutName()))
            QFile::remove(directory.filePath(name));
    }
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
