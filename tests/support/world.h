// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_WORLD_H
#define AUX_TESTS_WORLD_H

#include "files.h"

#include <QProcess>

/// Runs a shell command that has to succeed.
inline void run(const QString &command)
{
    if (QProcess::execute(QStringLiteral("sh"), {QStringLiteral("-ec"), command}) != 0)
        qFatal("failed: %s", qPrintable(command));
}

/// Puts a file where the sandbox may have a link to the machine's own.
inline void replace(const QString &path, const QByteArray &content)
{
    QFile::remove(path);
    write(path, content);
}

/// Makes a shell script that is found before any program of its name.
inline void fakeProgram(const char *name, const QByteArray &script)
{
    const QString directory = QStringLiteral("/tmp/fakes");
    QDir().mkpath(directory);
    const QString path = directory + '/' + name;
    replace(path, "#!/bin/sh\n" + script);
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    const QByteArray before = qgetenv("PATH");
    if (!before.startsWith(directory.toUtf8()))
        qputenv("PATH", directory.toUtf8() + ':' + before);
}

#endif
