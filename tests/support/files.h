// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_FILES_H
#define AUX_TESTS_FILES_H

#include <QByteArray>
#include <QDir>
#include <QFile>

inline void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        qFatal("cannot write %s", qPrintable(path));
}

/// The content, null where there is no such file.
inline QByteArray read(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray content = file.readAll();
    return content.isNull() ? QByteArray("") : content;
}

/// The names of all that is in a directory.
inline QStringList filesIn(const QString &path)
{
    return QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                QDir::NoDotAndDotDot);
}

/// Empties a directory, making it if need be.
inline void clear(const QString &path)
{
    QDir(path).removeRecursively();
    if (!QDir().mkpath(path))
        qFatal("cannot make %s", qPrintable(path));
}

#endif
