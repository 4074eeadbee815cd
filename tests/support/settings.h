// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_SETTINGS_H
#define AUX_TESTS_SETTINGS_H

#include "support/files.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>

/// Gives the process a settings file that nobody has written or read before; returns its path.
inline QString useFreshSettings()
{
    static int count = 0;
    const QString organisation = QStringLiteral("organisation%1").arg(++count);
    QCoreApplication::setOrganizationName(organisation);
    QCoreApplication::setApplicationName(QStringLiteral("terminal"));
    clear("/data/config/" + organisation);
    return "/data/config/" + organisation + "/terminal.JSON";
}

/// The value at a path like "device/lang" in what the file holds now.
inline QJsonValue valueIn(const QString &file, const QString &path)
{
    QJsonValue value = QJsonDocument::fromJson(read(file)).object();
    for (const QString &name : path.split('/'))
        value = value.toObject().value(name);
    return value;
}

#endif
