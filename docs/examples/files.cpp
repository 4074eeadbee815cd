// SPDX-License-Identifier: MIT
#include "examples.h"

#include <QDir>
#include <QRegularExpression>

namespace examples
{

//! [move]
// Packs a download and moves the container to the archive. Whatever fails, the download is still
// there, and so is in "new" a container that was not moved.
aux::Error keep(const QString &download)
{
    const QString container = aux::FsHelper::createUniqueFileName(aux::DirLocation::New);
    aux::Error error = aux::DataHelper::packFileToBinContainer(
        download, aux::DataHelper::ZEL_FILE_TYPE::DDDF, container);
    if (error.hasError())
        return error;
    const auto [unreadable, checksum] = aux::FsHelper::generateChecksum(container);
    if (unreadable.hasError())
        return unreadable;
    return aux::FsHelper::fileMove(aux::DirLocation::New, aux::DirLocation::Archive, container,
                                   checksum, true, {}); // the name stays
}
//! [move]

//! [locations]
// At start-up: nothing else makes the directories, also not after a factory reset.
bool makeLocations()
{
    bool made = true;
    for (const aux::DirLocation location :
         {aux::DirLocation::Config, aux::DirLocation::New, aux::DirLocation::Archive,
          aux::DirLocation::Transfer, aux::DirLocation::Log, aux::DirLocation::Failed})
        made = QDir().mkpath(aux::FsHelper::dirLocationToFullPath(location)) && made;
    return made;
}
//! [locations]

//! [name]
// From the name that somebody typed to the path of a file there, and back.
QString pathIn(const QString &locationName, const QString &fileName)
{
    const aux::DirLocation location = aux::FsHelper::dirLocationFromString(locationName);
    return location == aux::DirLocation::Invalid
               ? QString()
               : aux::FsHelper::createPathName(location, fileName);
}

QString locationNameOf(const QString &path)
{
    return aux::FsHelper::dirLocationToString(aux::FsHelper::dirLocationFromFullPath(path));
}
//! [name]

//! [companions]
// The two files that come with a configuration file lie beside it.
bool copyCompanions(const QString &from, const QString &to)
{
    return QFile::copy(aux::FsHelper::createGpgKeyFileName(from),
                       aux::FsHelper::createGpgKeyFileName(to)) &&
           QFile::copy(aux::FsHelper::createBackgroundImageFileName(from),
                       aux::FsHelper::createBackgroundImageFileName(to));
}
//! [companions]

//! [background]
// For an Image of Qt Quick. There is always one: the built-in image if there is no other.
QUrl background(const QString &configurationFile)
{
    return QUrl(aux::FsHelper::getBackgroundImageSource(configurationFile));
}
//! [background]

//! [list]
// The containers that wait. A directory that cannot be listed is no empty one.
aux::Error waiting(QStringList &containers)
{
    const auto [error, names] = aux::FsHelper::createDirList(aux::DirLocation::New);
    containers = names.filter(QRegularExpression("^rk4-.*\\.bin$"));
    return error;
}
//! [list]

//! [count]
// For a lamp that is lit while something waits, and blinks where nobody can tell.
QString lamp()
{
    const auto [error, number] = aux::FsHelper::getNumberOfDirEntries(aux::DirLocation::New);
    if (error.hasError())
        return "blinks";
    return number > 0 ? "on" : "off";
}
//! [count]

//! [room]
// Before a download: room for it, for its container, and for what a move leaves free.
bool hasRoomFor(qint64 bytes)
{
    constexpr qint64 leftFree = 64LL * 1024 * 1024;
    return aux::FsHelper::checkFreeSpace(aux::DirLocation::New, 2 * bytes + leftFree);
}
//! [room]

//! [reset]
// A factory reset. Also a failed one may have removed something, so the locations are made anew.
aux::Error resetTerminal()
{
    aux::Error error = aux::FsHelper::removeEntireDataDir();
    const bool made = makeLocations();
    if (!error.hasError() && !made)
        error = aux::ErrorData("terminal", "locations cannot be made", 1);
    return error;
}
//! [reset]

//! [checksum]
// Whether a file still is what it was when its checksum was taken.
bool isUnchanged(const QString &path, const QString &checksum)
{
    return aux::FsHelper::validateChecksum(path, checksum.toLower());
}
//! [checksum]

//! [keys]
// Locations are keys of a QHash.
QString label(aux::DirLocation location)
{
    static const QHash<aux::DirLocation, QString> labels{{aux::DirLocation::New, "To do"},
                                                         {aux::DirLocation::Archive, "Done"}};
    return labels.value(location, aux::FsHelper::dirLocationToString(location));
}
//! [keys]

} // namespace examples
