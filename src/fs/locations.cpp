// SPDX-License-Identifier: MIT
#include "fs/datadirectories.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <algorithm>

namespace aux
{

namespace
{

/// The last location whose row answers the question, else Invalid: a temporary directory that is
/// also another location is the temporary one.
template <typename Question>
DirLocation findLocation(const Question &question)
{
    const QVector<DataDirectory> &rows = dataDirectories();
    const auto found = std::find_if(rows.rbegin(), rows.rend(), question);
    return found == rows.rend() ? DirLocation::Invalid : found->location;
}

const DataDirectory &directory(DirLocation location)
{
    const QVector<DataDirectory> &rows = dataDirectories();
    const int index = static_cast<int>(location);
    return rows[index >= 0 && index < rows.size() ? index : 0];
}

const QString defaultBackgroundImage =
    QStringLiteral("qrc:/media/img/splash_motif06_keyvisual_800_480b.png");

QString besideFile(const QString &filePath, const QString &name)
{
    return QFileInfo(filePath).absolutePath() + QLatin1Char('/') + name;
}

} // namespace

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
