// SPDX-License-Identifier: MIT
#include "fs/newfile.h"
#include "fs/storage.h"

#include <QFileInfo>

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

/// Returns whether a file may take this name; a device or a pipe must not be replaced by one, and a
/// directory that cannot be opened cannot be fsynced.
bool isFreeForFile(const QString &path)
{
    const QFileInfo info(path);
    // Qt would take a name up to its first NUL.
    return !path.contains(QChar::Null) && !info.fileName().isEmpty() &&
           (info.isFile() || !info.exists()) && QFileInfo(directoryOf(path)).isReadable();
}

} // namespace

bool NewFile::open()
{
    if (!isFreeForFile(m_path))
        return false;
    m_file.setFileTemplate(directoryOf(m_path) + QStringLiteral("/.libaux-XXXXXX"));
    return m_file.open();
}

bool NewFile::hasRoom(int bytes)
{
    const QByteArray block(bytes, '\0');
    ::lseek(handle(), 0, SEEK_END);
    return ::write(handle(), block.constData(), block.size()) == block.size();
}

bool NewFile::commit()
{
    if (!m_file.flush() || ::fsync(handle()) != 0)
        return false;
    const QByteArray temporary = QFile::encodeName(m_file.fileName()); // gets one by this
    if (std::rename(temporary.constData(), QFile::encodeName(m_path).constData()) != 0)
        return false;
    m_file.setAutoRemove(false);
    return syncDirectory(directoryOf(m_path));
}

} // namespace aux
