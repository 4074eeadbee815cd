// SPDX-License-Identifier: MIT
#include <aux/fshelper.h>

#include "fs/datadirectories.h"
#include "fs/newfile.h"
#include "support/datadirectories.h"
#include "support/observe.h"
#include "support/rows.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

using aux::DirLocation;
using aux::FsHelper;

namespace
{

const QString noSuchDirectory = QStringLiteral("libaux FileHelper: directory does not exist 10001");

/// Makes directories in each other, too deep for a path.
void nest(const QString &path, int depth)
{
    const QByteArray name(200, 'n');
    int directory = ::open(qPrintable(path), O_DIRECTORY);
    for (int level = 0; level < depth; ++level) {
        ::mkdirat(directory, name.constData(), 0700);
        const int below = ::openat(directory, name.constData(), O_DIRECTORY);
        ::close(directory);
        directory = below;
    }
    QVERIFY(directory >= 0);
    ::close(directory);
}

QStringList fsyncs; // in their order

} // namespace

extern "C" int fsync(int file) // the library's
{
    struct stat status {
    };
    ::fstat(file, &status);
    fsyncs += S_ISDIR(status.st_mode) ? "directory" : QFile::exists(inNew + "f") ? "late" : "file";
    return 0;
}

extern "C" int statvfs64(const char *path, struct statvfs64 *storage) noexcept // the library's
{
    struct stat status {
    };
    storage->f_bsize = 4096;
    storage->f_frsize = 512;
    storage->f_bfree = 20;
    storage->f_bavail = 10;
    return ::stat(path, &status);
}

Q_DECLARE_METATYPE(DirLocation)

class TestFs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { clearDataDirectories(); }

    /// The rows themselves are in docs/tables.md, which is compared with them.
    void locations()
    {
        const QVector<aux::DataDirectory> &rows = aux::dataDirectories();
        for (int value = 1; value < rows.size(); ++value) {
            const auto location = static_cast<DirLocation>(value);
            const auto &[own, name, path, isFound, isCleared] = rows[value];
            QCOMPARE(own, location);
            QCOMPARE(FsHelper::dirLocationToString(location), name);
            QCOMPARE(FsHelper::dirLocationFromString(name), location);
            QCOMPARE(FsHelper::dirLocationFromString(name.toUpper()), DirLocation::Invalid);
            QCOMPARE(FsHelper::dirLocationToFullPath(location), path);
            QCOMPARE(FsHelper::createPathName(location, QStringLiteral("a/../b")),
                     path + "/a/../b");
            QCOMPARE(FsHelper::dirLocationFromFullPath(path + "/file"),
                     isFound ? location : DirLocation::Invalid);
        }
    }

    void invalidLocationsHaveNoPath()
    {
        for (const int value : {-1, 0, static_cast<int>(aux::dataDirectories().size())}) {
            const auto location = static_cast<DirLocation>(value);
            QVERIFY(FsHelper::dirLocationToFullPath(location).isNull());
            QCOMPARE(FsHelper::createPathName(location, QStringLiteral("f")), QStringLiteral("/f"));
            QCOMPARE(text(FsHelper::createDirList(location).first), noSuchDirectory);
            QCOMPARE(text(FsHelper::getNumberOfDirEntries(location).first), noSuchDirectory);
            QCOMPARE(text(FsHelper::fileMove(location, DirLocation::New, "etc", {}, false, {})),
                     QStringLiteral("libaux FileHandler: source directory does not exist 10001"));
            QCOMPARE(
                text(FsHelper::fileMove(DirLocation::New, location, "f", {}, false, {})),
                QStringLiteral("libaux FileHandler: destination directory does not exist 10001"));
        }
        for (const char *name : {"", "unknown", "<invalid>"})
            QCOMPARE(FsHelper::dirLocationFromString(name), DirLocation::Invalid);
    }

    void locationOfAPath()
    {
        QCOMPARE(FsHelper::dirLocationFromFullPath("/data/config"), DirLocation::Data);
        QCOMPARE(FsHelper::dirLocationFromFullPath(inArchive), DirLocation::Archive);
        for (const char *path : {"/data/zel/rk4/archive", "/data", "data", ""})
            QCOMPARE(FsHelper::dirLocationFromFullPath(path), DirLocation::Invalid);
    }

    /// In a process of its own: the table is built when the library is loaded.
    void missingTemporaryDirectoryIsNoLocation()
    {
        if (qgetenv("TMPDIR") == "/missing") {
            QVERIFY(FsHelper::dirLocationToFullPath(DirLocation::Tmp).isEmpty());
            QCOMPARE(FsHelper::dirLocationFromFullPath("/file"), DirLocation::Invalid);
            QCOMPARE(text(FsHelper::createDirList(DirLocation::Tmp).first), noSuchDirectory);
            return;
        }
        qputenv("TMPDIR", "/missing");
        const auto restore = qScopeGuard([] { qunsetenv("TMPDIR"); });
        QCOMPARE(QProcess::execute(QCoreApplication::applicationFilePath(),
                                   {"missingTemporaryDirectoryIsNoLocation"}),
                 0);
    }

    void namesBesideAFile()
    {
        const QString file = inNew + "x.bin";
        QCOMPARE(FsHelper::createGpgKeyFileName(file), inNew + "gpg_public.zelgpg");
        const QString image = inNew + "background.img";
        QCOMPARE(FsHelper::createBackgroundImageFileName(file), image);
        QCOMPARE(FsHelper::getBackgroundImageSource(file),
                 QStringLiteral("qrc:/media/img/splash_motif06_keyvisual_800_480b.png"));
        write(image, "x");
        QCOMPARE(FsHelper::getBackgroundImageSource(file), "file://" + image);
    }

    void uniqueNames()
    {
        const QRegularExpression form(
            "^/data/zel/rk4/new/rk4-[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}\\.bin$");
        QStringList names;
        for (int i = 0; i < 100; ++i)
            names += FsHelper::createUniqueFileName(DirLocation::New);
        QCOMPARE(names.removeDuplicates(), 0);
        for (const QString &name : names)
            QVERIFY2(form.match(name).hasMatch(), qPrintable(name));
    }

    void listsReadableFilesByName()
    {
        QCOMPARE(FsHelper::getNumberOfDirEntries(DirLocation::New).second, 0);
        for (const char *name :
             {"b.bin", "A.bin", "\u00e4.bin", "a.bin", ".hidden", "unreadable", "not\xffutf"})
            QVERIFY(::close(::creat((inNew.toUtf8() + name).constData(), 0600)) == 0);
        QDir().mkdir(inNew + "directory");
        ::mkfifo(qPrintable(inNew + "fifo"), 0600);
        QFile::link(inNew + "b.bin", inNew + "c.link");
        QFile::link(inNew + "fifo", inNew + "d.link");
        QFile::link(QStringLiteral("nowhere"), inNew + "dangling");
        QFile::setPermissions(inNew + "unreadable", {});
        const auto [error, names] = FsHelper::createDirList(DirLocation::New);
        QVERIFY(!error.hasError());
        QCOMPARE(names, QStringList({"A.bin", "a.bin", "b.bin", "c.link", "\u00e4.bin"}));
        QCOMPARE(FsHelper::getNumberOfDirEntries(DirLocation::New).second, names.size());
    }

    void failedListing()
    {
        ::chmod(qPrintable(inNew), 0);
        const QHash<DirLocation, QString> causes{
            {DirLocation::New, "/data/zel/rk4/new: Permission denied"},
            {DirLocation::Transfer, "/data/zel/rk4/transfer: No such file or directory"}};
        for (const DirLocation location : causes.keys()) {
            const auto [error, names] = FsHelper::createDirList(location);
            QCOMPARE(text(error), noSuchDirectory);
            QCOMPARE(error.getExtraData(), causes[location]);
            QCOMPARE(text(FsHelper::getNumberOfDirEntries(location).first), noSuchDirectory);
        }
        ::chmod(qPrintable(inNew), 0700);
    }

    void freeSpaceIsWhatTheUserMayWrite()
    {
        QVERIFY(FsHelper::checkFreeSpace(DirLocation::Archive, 10 * 512));
        QVERIFY(!FsHelper::checkFreeSpace(DirLocation::Archive, 10 * 512 + 1));
        QVERIFY(!FsHelper::checkFreeSpace(DirLocation::Transfer, 0)); // missing
    }

    void newFileIsOnTheStorageBeforeItsName()
    {
        {
            aux::NewFile file(inNew + "f");
            QVERIFY(file.open() && file.write("content"));
            fsyncs.clear();
            QVERIFY(file.commit());
        }
        QCOMPARE(fsyncs, QStringList({"file", "directory"}));
        QCOMPARE(read(inNew + "f"), QByteArray("content"));
    }

    void factoryResetLeavesNothing()
    {
        QStringList kept = filesIn("/data") + QStringList({"kept"}); // the checkout may be below it
        const QString elsewhere = QStringLiteral("/tmp/elsewhere");
        kept.sort();
        clear(QStringLiteral("/data/config/deep/er"));
        clear(elsewhere + "/outside");
        write(elsewhere + "/outside/kept", "x");
        write(QStringLiteral("/data/kept"), "x");
        QVERIFY(::close(::creat((inNew + "card").toUtf8() + "\xff.ddd", 0600)) == 0);
        nest(inNew, 30);
        QFile::link(elsewhere + "/outside", inNew + "link"); // not to be followed
        QDir().rmdir(inArchive);
        clear(elsewhere + "/archive/deep");
        QFile::link(elsewhere + "/archive", "/data/zel/rk4/archive"); // emptied where it leads
        QFile::link("/data", "/data/zel/rk4/transfer");               // only removed
        QFile::link("/", "/data/zel/rk4/log");
        QFile::link("nowhere", "/data/zel/rk4/failed");
        QCOMPARE(text(FsHelper::removeEntireDataDir()), QString());
        QCOMPARE(filesIn("/data"), kept);
        QCOMPARE(filesIn("/data/zel/rk4"), QStringList());
        QCOMPARE(filesIn(elsewhere), QStringList({"archive", "outside"}));
        QVERIFY(QDir(elsewhere + "/archive").isEmpty());
        QCOMPARE(read(elsewhere + "/outside/kept"), QByteArray("x"));
        QCOMPARE(text(FsHelper::removeEntireDataDir()), QString()); // nothing is there any more
        QFile::remove(QStringLiteral("/data/kept"));
        QDir(elsewhere).removeRecursively();
    }

    /// A mount point cannot be removed.
    void onlyTheLastRemovalDecides()
    {
        const SmallFileSystem mounted(inNew, "size=64k");
        QCOMPARE(text(FsHelper::removeEntireDataDir()), QString());
        const aux::Error error = FsHelper::removeEntireDataDir();
        QCOMPARE(text(error),
                 QStringLiteral("libaux Internal error: could not remove data directory 10001"));
        QCOMPARE(error.getExtraData(), QString("/data/zel/rk4/new: Device or resource busy"));
    }
};

QTEST_GUILESS_MAIN(TestFs)
#include "tst_fs.moc"
