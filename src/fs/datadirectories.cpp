// SPDX-License-Identifier: MIT
#include "fs/datadirectories.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QUuid>

#include <array>

namespace aux
{

namespace
{

struct Directory {
    QString name;
    QString path;
};

const QString dataRoot = QStringLiteral("/data");
const QString deviceRoot = dataRoot + QStringLiteral("/zel/rk4");

// Indexed by DirLocation.
const std::array<Directory, 9> directories{{
    {QStringLiteral("<invalid>"), {}},
    {QStringLiteral("data"), dataRoot},
    {QStringLiteral("config"), dataRoot + QStringLiteral("/config")},
    {QStringLiteral("new"), deviceRoot + QStringLiteral("/new")},
    {QStringLiteral("archive"), deviceRoot + QStringLiteral("/archive")},
    {QStringLiteral("transfer"), deviceRoot + QStringLiteral("/transfer")},
    {QStringLiteral("log"), deviceRoot + QStringLiteral("/log")},
    {QStringLiteral("failed"), deviceRoot + QStringLiteral("/failed")},
    {QStringLiteral("tmp"), QDir::tempPath()},
}};

DirLocation locationAt(std::size_t index)
{
    return static_cast<DirLocation>(index);
}

const Directory &directory(DirLocation location)
{
    const auto index = static_cast<std::size_t>(location);
    return directories[index < directories.size() ? index : 0];
}

QHash<QString, DirLocation> makeLocationsByName()
{
    QHash<QString, DirLocation> locations;
    for (std::size_t index = 0; index < directories.size(); ++index)
        locations.insert(directories[index].name, locationAt(index));
    return locations;
}

QHash<QString, DirLocation> makeLocationsByPath()
{
    QHash<QString, DirLocation> locations;
    for (std::size_t index = 1; index < directories.size(); ++index) {
        // Failed is deliberately not found by its path. The temporary directory has no path where
        // TMPDIR names a missing directory; "" would then stand for "/".
        if (locationAt(index) != DirLocation::Failed && !directories[index].path.isEmpty())
            locations.insert(directories[index].path, locationAt(index));
    }
    return locations;
}

const QHash<QString, DirLocation> locationsByName = makeLocationsByName();
const QHash<QString, DirLocation> locationsByPath = makeLocationsByPath();

const QString defaultBackgroundImage =
    QStringLiteral("qrc:/media/img/splash_motif06_keyvisual_800_480b.png");

QString besideFile(const QString &filePath, const QString &name)
{
    return QFileInfo(filePath).absolutePath() + QLatin1Char('/') + name;
}

} // namespace

bool directoryExists(DirLocation location)
{
    const QString path = FsHelper::dirLocationToFullPath(location);
    return !path.isEmpty() && QDir(path).exists();
}

QString FsHelper::dirLocationToString(DirLocation location)
{
    return directory(location).name;
}

DirLocation FsHelper::dirLocationFromString(const QString &name)
{
    return locationsByName.value(name, DirLocation::Invalid);
}

QString FsHelper::dirLocationToFullPath(DirLocation location)
{
    return location == DirLocation::Tmp ? QDir::tempPath() : directory(location).path;
}

DirLocation FsHelper::dirLocationFromFullPath(const QString &filePath)
{
    const QString holder = filePath.left(filePath.lastIndexOf(QLatin1Char('/')));
    return locationsByPath.value(holder, DirLocation::Invalid);
}

QString FsHelper::createPathName(DirLocation location, const QString &fileName)
{
    return dirLocationToFullPath(location) + QLatin1Char('/') + fileName;
}

QString FsHelper::createUniqueFileName(DirLocation location)
{
    const QString uuid = QUuid::createUuid().toString(QUuid::WithoutBraces);
    return QDir(dirLocationToFullPath(location))
        .filePath(QStringLiteral("rk4-") + uuid + QStringLiteral(".bin"));
}

QString FsHelper::createGpgKeyFileName(const QString &filePath)
{
    return besideFile(filePath, QStringLiteral("gpg_public.zelgpg"));
}

QString FsHelper::createBackgroundImageFileName(const QString &filePath)
{
    return besideFile(filePath, QStringLiteral("background.img"));
}

QString FsHelper::getBackgroundImageSource(const QString &filePath)
{
    const QString image = createBackgroundImageFileName(filePath);
    return QFile::exists(image) ? QStringLiteral("file://") + image : defaultBackgroundImage;
}

} // namespace aux
