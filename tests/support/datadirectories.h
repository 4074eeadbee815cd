// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_DATADIRECTORIES_H
#define AUX_TESTS_DATADIRECTORIES_H

#include "files.h"

#include <QCryptographicHash>

#include <sys/mount.h>

inline const QString inNew = QStringLiteral("/data/zel/rk4/new/");
inline const QString inArchive = QStringLiteral("/data/zel/rk4/archive/");

/// Leaves new and archive, empty, and no other location.
inline void clearDataDirectories()
{
    QDir("/data/config").removeRecursively();
    QDir("/data/zel").removeRecursively();
    clear(inNew);
    clear(inArchive);
}

inline QString sha256(const QByteArray &content)
{
    return QString::fromLatin1(
        QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex());
}

/// Mounts a tmpfs of its own on the directory while it lives.
class SmallFileSystem
{
public:
    SmallFileSystem(const QString &path, const QByteArray &options) : m_path(path.toUtf8())
    {
        if (::mount("small", m_path.constData(), "tmpfs", 0, options.constData()) != 0)
            qFatal("cannot mount %s", m_path.constData());
    }
    ~SmallFileSystem() { ::umount(m_path.constData()); }
    SmallFileSystem(const SmallFileSystem &) = delete;
    SmallFileSystem &operator=(const SmallFileSystem &) = delete;

private:
    QByteArray m_path;
};

#endif
