// SPDX-License-Identifier: MIT
#include "fs/datadirectories.h"
#include "error/failure.h"

#include <QDir>
#include <QFile>

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
    {DirLocation::Invalid,  QStringLiteral("<invalid>"), {},                                       isNotFound, isKept},
    {DirLocation::Data,     QStringLiteral("data"),      dataRoot,                                 isFound,    isKept},
    {DirLocation::Config,   QStringLiteral("config"),    dataRoot + QStringLiteral("/config"),     isFound,    isCleared},
    {DirLocation::New,      QStringLiteral("new"),       deviceRoot + QStringLiteral("/new"),      isFound,    isCleared},
    {DirLocation::Archive,  QStringLiteral("archive"),   deviceRoot + QStringLiteral("/archive"),  isFound,    isCleared},
    {DirLocation::Transfer, QStringLiteral("transfer"),  deviceRoot + QStringLiteral("/transfer"), isFound,    isCleared},
    {DirLocation::Log,      QStringLiteral("log"),       deviceRoot + QStringLiteral("/log"),      isFound,    isCleared},
    {DirLocation::Failed,   QStringLiteral("failed"),    deviceRoot + QStringLiteral("/failed"),   isNotFound, isCleared},
    {DirLocation::Tmp,      QStringLiteral("tmp"),       QDir::tempPath(),                         isFound,    isKept},
};
// clang-format on

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

} // namespace aux
