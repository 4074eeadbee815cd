// SPDX-License-Identifier: MIT
#include "fs/datadirectories.h"
#include "error/failure.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <algorithm>
#include <cerrno>

#include <unistd.h>

namespace aux
{

namespace
{

const QString dataRoot = QStringLiteral("/data");
const QString deviceRoot = dataRoot + QStringLiteral("/zel/rk4");

constexpr bool isFound = true;
constexpr bool isNotFound = false;
constexpr bool isCleared = true;
constexpr bool isKept = false;

// Failed is deliberately not found by its path.
// clang-format off
const QVector<DataDirectory> directories{
    {QStringLiteral("<invalid>"), {},                                       isNotFound, isKept},
    {QStringLiteral("data"),      dataRoot,                                 isFound,    isKept},
    {QStringLiteral("config"),    dataRoot + QStringLiteral("/config"),     isFound,    isCleared},
    {QStringLiteral("new"),       deviceRoot + QStringLiteral("/new"),      isFound,    isCleared},
    {QStringLiteral("archive"),   deviceRoot + QStringLiteral("/archive"),  isFound,    isCleared},
    {QStringLiteral("transfer"),  deviceRoot + QStringLiteral("/transfer"), isFound,    isCleared},
    {QStringLiteral("log"),       deviceRoot + QStringLiteral("/log"),      isFound,    isCleared},
    {QStringLiteral("failed"),    deviceRoot + QStringLiteral("/failed"),   isNotFound, isCleared},
    {QStringLiteral("tmp"),       QDir::tempPath(),                         isFound,    isKept},
};
// clang-format on

/// The last location whose row answers the question, else Invalid: a temporary directory that is
/// also another location is the temporary one.
template <typename Question>
DirLocation findLocation(const Question &question)
{
    const auto found = std::find_if(directories.rbegin(), directories.rend(), question);
    return found == directories.rend() ? DirLocation::Invalid
                                       : static_cast<DirLocation>(directories.rend() - found - 1);
}

const DataDirectory &directory(DirLocation location)
{
    const int index = static_cast<int>(location);
    return directories[index >= 0 && index < directories.size() ? index : 0];
}

const QString defaultBackgroundImage =
    QStringLiteral("qrc:/media/img/splash_motif06_keyvisual_800_480b.png");

QString besideFile(const QString &filePath, const QString &name)
{
    return QFileInfo(filePath).absolutePath() + QLatin1Char('/') + name;
}

} // namespace

const QVector<DataDirectory> &dataDirectories()
{
    return directories;
}

bool directoryExists(DirLocation location)
{
    const QString path = FsHelper::dirLocationToFullPath(location);
    return !path.isEmpty() && QDir(path).exists();
}

QString causeOfMissing(DirLocation location)
{
    const QString path = FsHelper::dirLocationToFullPath(location);
    if (path.isEmpty())
        return {};
    return causeOf(path,
                   ::access(QFile::encodeName(path).constData(), F_OK) != 0 ? errno : ENOTDIR);
}

QString FsHelper::dirLocationToString(DirLocation location)
{
    return directory(location).name;
}

DirLocation FsHelper::dirLocationFromString(const QString &name)
{
    return findLocation([&](const DataDirectory &row) { return row.name == name; });
}

QString FsHelper::dirLocationToFullPath(DirLocation location)
{
    return location == DirLocation::Tmp ? QDir::tempPath() : directory(location).path;
}

DirLocation FsHelper::dirLocationFromFullPath(const QString &filePath)
{
    const QString holder = filePath.left(filePath.lastIndexOf(QLatin1Char('/')));
    // The temporary directory has no path where TMPDIR names a missing directory; "" would then
    // stand for "/".
    return findLocation([&](const DataDirectory &row) {
        return row.isFoundByPath && !row.path.isEmpty() && row.path == holder;
    });
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
