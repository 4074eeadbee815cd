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

/// The names in /tmp but for those that were there from the start: the checkout may be below it.
inline QStringList filesInTmp()
{
    static const QStringList shown = filesIn("/tmp");
    QStringList names = filesIn("/tmp");
    for (const QString &name : shown)
        names.removeAll(name);
    return names;
}

/// Removes what was left in /tmp.
inline void clearTmp()
{
    for (const QString &name : filesInTmp()) {
        const QString path = "/tmp/" + name;
        if (!QFile::remove(path) && !QDir(path).removeRecursively())
            qFatal("cannot remove %s", qPrintable(path));
    }
}

/// Empties a directory, making it if need be.
inline void clear(const QString &path)
{
    QDir(path).removeRecursively();
    if (!QDir().mkpath(path))
        qFatal("cannot make %s", qPrintable(path));
}

#endif
