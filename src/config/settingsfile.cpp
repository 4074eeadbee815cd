// SPDX-License-Identifier: MIT
#include "config/settingsfile.h"
#include "aux/fshelper.h"
#include "config/jsonformat.h"
#include "config/settingslock.h"
#include "fs/storage.h"

#include <QFileInfo>

namespace aux
{

namespace
{

QString parentOf(const QString &path)
{
    return QFileInfo(path).path();
}

/// Where a link leads, else the file itself.
QString targetOf(const QString &file)
{
    const QString target = QFileInfo(file).canonicalFilePath();
    return target.isEmpty() ? file : target;
}

QString nearestDirectory(const QString &file)
{
    QString directory = parentOf(file);
    while (!QFileInfo::exists(directory) && directory.size() > 1)
        directory = parentOf(directory);
    return directory;
}

/// Flushes the names on the way from a directory down to the file.
void syncNames(const QString &directory, const QString &file)
{
    QString path = file;
    do {
        path = parentOf(path);
        syncDirectory(path);
    } while (path.size() > directory.size());
}

} // namespace

void useSettingsFile()
{
    // Once: QSettings has room for 16 formats in all and gives none back.
    static const QSettings::Format format = QSettings::registerFormat(
        QStringLiteral("JSON"), json::readSettings, json::writeSettings, Qt::CaseSensitive);
    if (QSettings::defaultFormat() != format) // other threads may be reading it
        QSettings::setDefaultFormat(format);
    QSettings::setPath(format, QSettings::UserScope,
                       FsHelper::dirLocationToFullPath(DirLocation::Config));
    removeAbandonedLock(QSettings().fileName());
}

bool changeSettings(const std::function<void(QSettings &)> &change)
{
    QSettings settings;
    removeAbandonedLock(settings.fileName());
    const QString file = targetOf(settings.fileName());
    const QString present = nearestDirectory(file); // what is below will be made
    change(settings);
    settings.sync();
    // The new text is fsynced, its name is not yet.
    syncNames(present, file);
    return settings.status() == QSettings::NoError;
}

} // namespace aux
