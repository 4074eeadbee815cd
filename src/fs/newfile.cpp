// SPDX-License-Identifier: MIT
#include "fs/newfile.h"
#include "fs/storage.h"

#include <QFileInfo>

#include <array>
#include <cstdio>

#include <unistd.h>

namespace aux
{

namespace
{

constexpr std::size_t blockSize = 4096;

QString directoryOf(const QString &path)
{
    return QFileInfo(path).absolutePath();
}

/// Tells whether a file may take this name; a device or a pipe must not be replaced by one.
bool isFreeForFile(const QString &path)
{
    const QFileInfo info(path);
    // Qt would take a name up to its first NUL.
    return !path.contains(QChar::Null) && !info.fileName().isEmpty() &&
           (info.isFile() || !info.exists());
}

} // namespace

bool NewFile::open()
{
    if (!isFreeForFile(m_path))
        return false;
    m_file.setFileTemplate(directoryOf(m_path) + QStringLiteral("/.libaux-XXXXXX"));
    return m_file.open();
}

bool NewFile::hasRoom()
{
    const std::array<char, blockSize> block{};
    ::lseek(handle(), 0, SEEK_END);
    return ::write(handle(), block.data(), block.size()) == static_cast<ssize_t>(block.size());
}

bool NewFile::publish()
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
