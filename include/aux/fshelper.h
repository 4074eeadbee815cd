// SPDX-License-Identifier: MIT
#ifndef AUX_FSHELPER_H
#define AUX_FSHELPER_H

#include <aux/error.h>
#include <aux/export.h>

#include <QHash>
#include <QString>
#include <QStringList>

#include <utility>

namespace aux
{

/// The directories that hold the terminal's files. A value outside the list is an invalid
/// location wherever one is taken. The library makes none of them but Config, for settings.
enum class DirLocation : int {
    Invalid = 0,
    Data,     ///< "/data", the root of all others but Tmp
    Config,   ///< "/data/config"
    New,      ///< "/data/zel/rk4/new"
    Archive,  ///< "/data/zel/rk4/archive"
    Transfer, ///< "/data/zel/rk4/transfer"
    Log,      ///< "/data/zel/rk4/log"
    Failed,   ///< "/data/zel/rk4/failed"
    Tmp,      ///< the system's temporary directory
};

/// Makes a location a key of QHash.
/// @shown{files,keys}
inline uint qHash(DirLocation location, uint seed = 0) noexcept
{
    return ::qHash(static_cast<int>(location), seed);
}

/// Names, lists, checks and moves the files in the terminal's data directories.
/// @shown{files,move}
///
/// *Guarantees*: no state; any thread may call. Nothing here waits for anything but the storage,
/// and a move that finds a duplicate for those of other processes and threads that do: they take
/// turns to remove it, so that of two copies one stays. After a successful fileMove the file is in
/// the destination and flushed to the storage; after a failed one it is still where it was, and the
/// move can be repeated; after an interrupted one it is in one of the two places. That the
/// destination has a file of that name decides that the source is a duplicate; what is in the two
/// counts only with a checksum. An error that the system has caused says so in its extra data:
/// "PATH: EXPLANATION".
class AUX_EXPORT FsHelper
{
public:
    FsHelper() = default;

    /// @name Locations and names
    /// Pure text, no failures; only getBackgroundImageSource looks at the disk.
    /// @{

    /// Returns the location's name, that of its enumerator in lower case; "<invalid>" for
    /// everything else.
    /// @shown{files,name}
    static QString dirLocationToString(DirLocation location);
    /// Returns the location of exactly this name (upper and lower case differ), else Invalid.
    /// @shown{files,name}
    static DirLocation dirLocationFromString(const QString &name);
    /// Returns the location's path without a separator at its end; null for an invalid location.
    /// @shown{files,locations}
    static QString dirLocationToFullPath(DirLocation location);
    /// Returns the location of the directory that holds the given file, which is everything before
    /// the last "/"; Invalid where that is no location.
    ///
    /// A directory's own path yields the location of its parent. Files in the failed directory
    /// yield Invalid: that location is deliberately not found this way. The temporary directory
    /// is the one the process had when the library was loaded.
    /// @shown{files,name}
    static DirLocation dirLocationFromFullPath(const QString &filePath);
    /// Returns the location's path, "/" and the name, unchanged and unchecked; so an invalid
    /// location gives a path in the root directory.
    /// @shown{files,name}
    static QString createPathName(DirLocation location, const QString &fileName);
    /// Returns a path for a new data file: "rk4-", a random UUID and ".bin". Creates nothing. For
    /// an invalid location the path is one in the current directory.
    /// @shown{files,move}
    static QString createUniqueFileName(DirLocation location);
    /// Returns the absolute path of the public OpenPGP key, "gpg_public.zelgpg", beside the given
    /// file.
    /// @shown{files,companions}
    static QString createGpgKeyFileName(const QString &filePath);
    /// Returns the absolute path of the background image, "background.img", beside the given file.
    /// @shown{files,companions}
    static QString createBackgroundImageFileName(const QString &filePath);
    /// Returns "file://" and the path of the background image beside the given file where it
    /// exists, else "qrc:/media/img/splash_motif06_keyvisual_800_480b.png", which is a resource of
    /// the application. The path is not percent-encoded: as a QUrl it ends at a "#" or "?".
    /// @shown{files,background}
    static QString getBackgroundImageSource(const QString &filePath);
    /// @}

    /// @name Whole directories
    /// @{

    /// Lists the names of the readable regular files of a location and of links to such, by name
    /// ignoring case; no hidden files, and none with a name that is not UTF-8: no QString names it.
    ///
    /// @fails with 10001 "FileHelper: directory does not exist", also for an invalid location and
    /// for a directory that cannot be read.
    /// @shown{files,list}
    [[nodiscard]] static std::pair<Error, QStringList> createDirList(DirLocation location);
    /// Counts what createDirList lists, in constant memory; its failures, with a count of 0.
    /// @shown{files,count}
    [[nodiscard]] static std::pair<Error, int> getNumberOfDirEntries(DirLocation location);
    /// Returns whether the calling user may write at least so many more bytes, 0 or more, to the
    /// location's file system. False when that cannot be told. An invalid location stands for the
    /// current directory.
    /// @shown{files,room}
    static bool checkFreeSpace(DirLocation location, qint64 bytes);
    /// Removes all locations but the data root and the temporary directory (a factory reset), with
    /// everything in them: names in any bytes, any depth, links without following them. Nothing
    /// recreates them. Flushes the file systems (sync), so that a power cut brings nothing back.
    /// The last column of @ref tables tells which these are.
    ///
    /// A location that is itself a link is emptied where it leads, and the link is removed. One
    /// that leads to a directory which holds more than a location ("/", "/data", "/data/zel",
    /// "/data/zel/rk4", the temporary directory and those above it) is only removed.
    ///
    /// @fails with 10001 "Internal error: could not remove data directory". Deliberately only the
    /// last directory that exists decides: an earlier one that could not be removed is not
    /// reported when a later one was.
    /// @shown{files,reset}
    static Error removeEntireDataDir();
    /// @}

    /// @name Checksums
    /// SHA-256 (FIPS 180-4) of the whole file as 64 lower-case hexadecimal characters. The file
    /// is read in small pieces, whatever its size.
    /// @{

    /// Returns the file's checksum, empty on failure.
    ///
    /// @fails with 10001 and
    /// - "Internal error: path cannot be opened": missing, no permission, or no regular file
    /// - "Internal error: path cannot be read": the medium fails, or the file is shorter than its
    ///   size, as those of sysfs are
    /// - "Internal error: could not calculate checksum": the system's libgcrypt has no SHA-256.
    /// @shown{files,move}
    [[nodiscard]] static std::pair<Error, QString> generateChecksum(const QString &filePath);
    /// Returns whether the file exists and has exactly this checksum; upper-case text never
    /// matches.
    ///
    /// The reason for a false goes to the debug log as "validateChecksum" and one of
    /// ": invalid path parameter", ": invalid checksum parameter", ": path does not exist",
    /// ": checksum mismatch", or ": " and the error of generateChecksum.
    /// @shown{files,checksum}
    static bool validateChecksum(const QString &filePath, const QString &checksum);
    /// @}

    /// Moves a file from one location to another and flushes the file systems (sync).
    ///
    /// Of `fileName` and `newFileName` only the last path component counts; an empty `newFileName`
    /// keeps the name. With `checkChecksum` the file must have the given checksum. The destination
    /// needs room for the file and 64 MiB more. The move is a rename, never a copy, so it cannot
    /// leave the file system. A link to a regular file is moved itself. Where the destination
    /// already holds a file of that name, the source is a duplicate and is removed; the destination
    /// is never replaced, not even a corrupt one whose source is intact. A file moved onto itself
    /// is checked and kept.
    ///
    /// @fails with the source where it was and the destination untouched:
    /// - 10001 "FileHandler: source directory does not exist"
    /// - 10001 "FileHandler: destination directory does not exist"
    /// - 10002 "FileHandler: source file does not exist"
    /// - 10003 "FileHandler: cannot read source file": the owner may not read it
    /// - 10005 "FileHandler: source file checksum mismatch": of the source, or, for a duplicate,
    ///   of both files
    /// - 10006 "FileHandler: not enough space in destination"
    /// - 10004 "FileHandler: moving source file to destination failed": also where the source or
    ///   the destination is something that is no regular file
    /// - 10004 "FileHandler: removing source file already present in destination failed": also
    ///   where others have locked the directory "/data" (flock) for five seconds
    ///
    /// Blocks while checksums are read, while another duplicate is removed, and until everything is
    /// flushed. A mover that is killed ends its turn. Failed checks write the lines of
    /// validateChecksum.
    /// @shown{files,move}
    static Error fileMove(DirLocation from, DirLocation to, const QString &fileName,
                          const QString &checksum, bool checkChecksum, const QString &newFileName);
};

} // namespace aux

#endif
