// SPDX-License-Identifier: MIT
#include <aux/fshelper.h>

#include "support/files.h"
#include "support/observe.h"

#include <QCryptographicHash>
#include <QSet>
#include <QtTest>

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using aux::DirLocation;
using aux::FsHelper;

static int syncs = 0;
extern "C" void sync() noexcept // the library's
{
    ++syncs;
}

namespace
{

const QString inNew = QStringLiteral("/data/zel/rk4/new/");
const QString inArchive = QStringLiteral("/data/zel/rk4/archive/");
const QString noSuchDirectory = QStringLiteral("libaux FileHelper: directory does not exist 10001");

QString sha256(const QByteArray &content)
{
    return QString::fromLatin1(
        QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex());
}

/// Moves from new to archive.
QString move(const QString &name, const QString &newName = {}, const QString &checksum = {})
{
    return text(FsHelper::fileMove(DirLocation::New, DirLocation::Archive, name, checksum,
                                   !checksum.isNull(), newName));
}

void mountSmall(const QString &path, const char *options)
{
    if (::mount("small", qPrintable(path), "tmpfs", 0, options) != 0)
        qFatal("cannot mount %s", qPrintable(path));
}

} // namespace

Q_DECLARE_METATYPE(DirLocation)

class TestFs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        for (const char *name : {"config", "zel"})
            QDir(QLatin1String("/data/") + QLatin1String(name)).removeRecursively();
        clear(inNew);
        clear(inArchive);
        syncs = 0;
    }

    void locations_data()
    {
        QTest::addColumn<int>("value");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("found"); // by the path of a file inside
        QTest::newRow("data") << 1 << "data"
                              << "/data" << 1;
        QTest::newRow("config") << 2 << "config"
                                << "/data/config" << 2;
        QTest::newRow("new") << 3 << "new"
                             << "/data/zel/rk4/new" << 3;
        QTest::newRow("archive") << 4 << "archive"
                                 << "/data/zel/rk4/archive" << 4;
        QTest::newRow("transfer") << 5 << "transfer"
                                  << "/data/zel/rk4/transfer" << 5;
        QTest::newRow("log") << 6 << "log"
                             << "/data/zel/rk4/log" << 6;
        QTest::newRow("failed") << 7 << "failed"
                                << "/data/zel/rk4/failed" << 0;
        QTest::newRow("tmp") << 8 << "tmp" << QDir::tempPath() << 8;
    }
    void locations()
    {
        QFETCH(int, value);
        QFETCH(QString, name);
        QFETCH(QString, path);
        const auto location = static_cast<DirLocation>(value);
        QCOMPARE(FsHelper::dirLocationToString(location), name);
        QCOMPARE(FsHelper::dirLocationFromString(name), location);
        QCOMPARE(FsHelper::dirLocationFromString(name.toUpper()), DirLocation::Invalid);
        QCOMPARE(FsHelper::dirLocationToFullPath(location), path);
        QCOMPARE(FsHelper::createPathName(location, QStringLiteral("a/../b")), path + "/a/../b");
        QTEST(static_cast<int>(FsHelper::dirLocationFromFullPath(path + "/file")), "found");
    }

    void invalidLocationsHaveNoPath()
    {
        for (const int value : {-1, 0, 9}) {
            const auto location = static_cast<DirLocation>(value);
            QVERIFY(FsHelper::dirLocationToFullPath(location).isNull());
            QCOMPARE(FsHelper::createPathName(location, QStringLiteral("f")), QStringLiteral("/f"));
            QCOMPARE(text(FsHelper::createDirList(location).first), noSuchDirectory);
            QCOMPARE(text(FsHelper::getNumberOfDirEntries(location).first), noSuchDirectory);
            QCOMPARE(text(FsHelper::fileMove(location, DirLocation::New, "f", {}, false, {})),
                     QStringLiteral("libaux FileHandler: source directory does not exist 10001"));
            QCOMPARE(
                text(FsHelper::fileMove(DirLocation::New, location, "f", {}, false, {})),
                QStringLiteral("libaux FileHandler: destination directory does not exist 10001"));
        }
        for (const char *name : {"", "unknown", "<invalid>"})
            QCOMPARE(FsHelper::dirLocationFromString(name), DirLocation::Invalid);
    }

    void locationOfAPath_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<DirLocation>("location");
        QTest::newRow("a directory is in its parent") << "/data/config" << DirLocation::Data;
        QTest::newRow("with a separator it is itself") << inArchive << DirLocation::Archive;
        QTest::newRow("whose parent is none") << "/data/zel/rk4/archive" << DirLocation::Invalid;
        QTest::newRow("the root") << "/data" << DirLocation::Invalid;
        QTest::newRow("no separator") << "data" << DirLocation::Invalid;
        QTest::newRow("nothing") << "" << DirLocation::Invalid;
    }
    void locationOfAPath()
    {
        QFETCH(QString, path);
        QTEST(FsHelper::dirLocationFromFullPath(path), "location");
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
        QSet<QString> names;
        for (int i = 0; i < 100; ++i)
            names += FsHelper::createUniqueFileName(DirLocation::New);
        QCOMPARE(names.size(), 100);
        for (const QString &name : names)
            QVERIFY2(form.match(name).hasMatch(), qPrintable(name));
    }

    void listsReadableFilesByName()
    {
        QCOMPARE(FsHelper::getNumberOfDirEntries(DirLocation::New).second, 0);
        for (const char *name : {"b.bin", "A.bin", "c.bin", ".hidden", "unreadable"})
            write(inNew + name, "x");
        QDir().mkdir(inNew + "directory");
        QFile::setPermissions(inNew + "unreadable", {});
        const auto [error, names] = FsHelper::createDirList(DirLocation::New);
        QVERIFY(!error.hasError());
        QCOMPARE(names, QStringList({"A.bin", "b.bin", "c.bin"}));
        const auto [countError, count] = FsHelper::getNumberOfDirEntries(DirLocation::New);
        QVERIFY(!countError.hasError());
        QCOMPARE(count, 3);
        QCOMPARE(text(FsHelper::createDirList(DirLocation::Transfer).first), noSuchDirectory);
    }

    void freeSpaceIsWhatTheUserMayWrite()
    {
        mountSmall(inArchive, "size=64k");
        QVERIFY(FsHelper::checkFreeSpace(DirLocation::Archive, 64 * 1024));
        QVERIFY(!FsHelper::checkFreeSpace(DirLocation::Archive, 64 * 1024 + 1));
        ::umount(qPrintable(inArchive));
        QVERIFY(!FsHelper::checkFreeSpace(DirLocation::Transfer, 0)); // missing
    }

    void factoryReset()
    {
        clear(QStringLiteral("/data/config/deep/er"));
        write(inNew + "f", "x");
        write(QStringLiteral("/data/kept"), "x");
        QCOMPARE(text(FsHelper::removeEntireDataDir()), QString());
        QCOMPARE(QDir("/data").entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList({"kept", "zel"}));
        QVERIFY(QDir("/data/zel/rk4").isEmpty());
        QCOMPARE(text(FsHelper::removeEntireDataDir()), QString()); // nothing is there any more
        QFile::remove(QStringLiteral("/data/kept"));
    }

    /// A mount point cannot be removed.
    void onlyTheLastRemovalDecides()
    {
        mountSmall(inNew, "size=64k");
        const auto unmount = qScopeGuard([] { ::umount(qPrintable(inNew)); });
        QCOMPARE(text(FsHelper::removeEntireDataDir()), QString());
        QCOMPARE(text(FsHelper::removeEntireDataDir()),
                 QStringLiteral("libaux Internal error: could not remove data directory 10001"));
    }

    void checksum()
    {
        const auto failure = [](const QString &path) {
            const auto [error, checksum] = FsHelper::generateChecksum(path);
            return text(error) + checksum;
        };
        const QString file = inNew + "f";
        for (const QByteArray &content : {QByteArray(), QByteArray(100000, 'x')}) {
            write(file, content);
            QCOMPARE(failure(file), sha256(content));
        }
        const QString closed = QStringLiteral("libaux Internal error: path cannot be opened 10001");
        QCOMPARE(failure(inNew), closed);
        QCOMPARE(failure(inNew + "missing"), closed);
        QFile::setPermissions(file, {});
        QCOMPARE(failure(file), closed);
        const QString unreadable =
            QStringLiteral("libaux Internal error: path cannot be read 10001");
        QCOMPARE(failure(QStringLiteral("/sys/class/net/lo/mtu")), unreadable);
        QCOMPARE(failure(QStringLiteral("/proc/self/mem")), unreadable); // size 0, read error
    }

    void validation_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("checksum");
        QTest::addColumn<QString>("line"); // none: valid
        const QString file = inNew + "f";
        const QString good = sha256("content");
        QTest::newRow("right") << file << good << QString();
        QTest::newRow("no path") << ""
                                 << ""
                                 << "validateChecksum : invalid path parameter";
        QTest::newRow("no checksum") << file << ""
                                     << "validateChecksum : invalid checksum parameter";
        QTest::newRow("missing") << inNew + "g" << good << "validateChecksum : path does not exist";
        QTest::newRow("upper case")
            << file << good.toUpper() << "validateChecksum : checksum mismatch";
        QTest::newRow("a directory")
            << inNew << good
            << "validateChecksum :  \"libaux\" \"Internal error: path cannot be opened\" 10001 \n";
    }
    void validation()
    {
        QFETCH(QString, path);
        QFETCH(QString, checksum);
        QFETCH(QString, line);
        write(inNew + "f", "content");
        const MessageLog log;
        QCOMPARE(FsHelper::validateChecksum(path, checksum), line.isNull());
        QCOMPARE(log.take(), line.isNull() ? QStringList() : QStringList(line));
    }

    void moveOfANewFile_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("newName");
        QTest::addColumn<QString>("checksum"); // null: not checked
        QTest::addColumn<QString>("moved");
        const QString good = sha256("content");
        QTest::newRow("bare name") << "f" << QString() << QString() << "f";
        QTest::newRow("only the last components count") << "/else/where/f"
                                                        << "x/y.bin" << good << "y.bin";
    }
    void moveOfANewFile()
    {
        QFETCH(QString, name);
        QFETCH(QString, newName);
        QFETCH(QString, checksum);
        QFETCH(QString, moved);
        write(inNew + "f", "content");
        QCOMPARE(move(name, newName, checksum), QString());
        QVERIFY(!QFile::exists(inNew + "f"));
        QCOMPARE(read(inArchive + moved), QByteArray("content"));
        QCOMPARE(syncs, 1);
    }

    /// Nothing is lost and nothing is flushed.
    void refusedMove_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("newName");
        QTest::addColumn<QString>("checksum");
        QTest::addColumn<QString>("error");
        const QString mismatch =
            QStringLiteral("libaux FileHandler: source file checksum mismatch 10005");
        const QString missing =
            QStringLiteral("libaux FileHandler: source file does not exist 10002");
        const QString failed =
            QStringLiteral("libaux FileHandler: moving source file to destination failed 10004");
        const QString wrong = sha256("other");
        QTest::newRow("wrong checksum") << "f" << QString() << wrong << mismatch;
        QTest::newRow("empty checksum") << "f" << QString() << "" << mismatch;
        QTest::newRow("empty checksum of a duplicate") << "f"
                                                       << "corrupt"
                                                       << "" << mismatch;
        QTest::newRow("both wrong") << "f"
                                    << "corrupt" << wrong << mismatch;
        QTest::newRow("missing") << "g" << QString() << QString() << missing;
        QTest::newRow("NUL in the name")
            << QString("f\0g").leftJustified(3) << QString() << QString() << missing;
        QTest::newRow("owner may not read") << "unreadable" << QString() << wrong
                                            << "libaux FileHandler: cannot read source file 10003";
        QTest::newRow("destination is a directory") << "f"
                                                    << "directory" << QString() << failed;
        QTest::newRow("new name ends in a separator") << "f"
                                                      << "x/" << QString() << failed;
        QTest::newRow("new name is the parent") << "f"
                                                << ".." << QString() << failed;
        QTest::newRow("new name has a NUL")
            << "f" << QString::fromLatin1("a\0b", 3) << QString() << failed;
        QTest::newRow("destination is a dangling link") << "f"
                                                        << "dangling" << QString() << failed;
        QTest::newRow("source is a directory") << "directory"
                                               << "g" << QString() << failed;
        QTest::newRow("name is the source directory") << "x/"
                                                      << "g" << QString() << failed;
    }
    void refusedMove()
    {
        QFETCH(QString, name);
        QFETCH(QString, newName);
        QFETCH(QString, checksum);
        write(inNew + "f", "content");
        write(inNew + "unreadable", "content");
        QFile::setPermissions(inNew + "unreadable", QFileDevice::WriteOwner);
        QDir().mkdir(inNew + "directory");
        write(inArchive + "corrupt", "corrupt");
        QDir().mkdir(inArchive + "directory");
        QFile::link(QStringLiteral("nowhere"), inArchive + "dangling");
        QTEST(move(name, newName, checksum), "error");
        QCOMPARE(QDir(inNew).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList({"directory", "f", "unreadable"}));
        QCOMPARE(read(inNew + "f"), QByteArray("content"));
        QCOMPARE(read(inArchive + "corrupt"), QByteArray("corrupt"));
        QVERIFY(!QFile::exists(inArchive + "nowhere"));
        QCOMPARE(syncs, 0);
    }

    void duplicate_data()
    {
        QTest::addColumn<QString>("checksum");
        QTest::addColumn<QByteArray>("there");
        QTest::newRow("not checked") << QString() << QByteArray("different");
        QTest::newRow("intact") << sha256("content") << QByteArray("content");
        QTest::newRow("corrupt, the source is not") << sha256("content") << QByteArray("corrupt");
    }
    void duplicate()
    {
        QFETCH(QString, checksum);
        QFETCH(QByteArray, there);
        write(inNew + "f", "content");
        write(inArchive + "f", there);
        QCOMPARE(move(QStringLiteral("f"), {}, checksum), QString());
        QVERIFY(!QFile::exists(inNew + "f"));
        QCOMPARE(read(inArchive + "f"), there);
        QCOMPARE(syncs, 1);
    }

    void moveOntoItselfKeepsTheFile()
    {
        write(inNew + "f", "content");
        const auto moveHere = [](const char *name, const QString &checksum, const char *newName) {
            return text(FsHelper::fileMove(DirLocation::New, DirLocation::New, name, checksum,
                                           !checksum.isNull(), newName));
        };
        QCOMPARE(moveHere("f", sha256("content"), ""), QString());
        QCOMPARE(moveHere("f", sha256("x"), ""),
                 QStringLiteral("libaux FileHandler: source file checksum mismatch 10005"));
        QFile::link(inNew + "f", inNew + "link");
        QCOMPARE(moveHere("f", {}, "link"), QString()); // a link is no copy
        QCOMPARE(moveHere("link", {}, "link"), QString());
        QVERIFY(QFile(inNew + "link").exists());
        QCOMPARE(read(inNew + "f"), QByteArray("content"));
        ::link(qPrintable(inNew + "f"), qPrintable(inNew + "hard"));
        QCOMPARE(moveHere("f", {}, "hard"), QString()); // a hard link is a second name
        QVERIFY(!QFile::exists(inNew + "f"));
        QCOMPARE(read(inNew + "hard"), QByteArray("content"));
    }

    void removalOfADuplicateFails()
    {
        write(inNew + "f", "content");
        write(inArchive + "f", "content");
        ::chmod(qPrintable(inNew), 0500);
        QCOMPARE(move(QStringLiteral("f")),
                 QStringLiteral("libaux FileHandler: removing source file already present in "
                                "destination failed 10004"));
        ::chmod(qPrintable(inNew), 0700);
        QCOMPARE(syncs, 0);
    }

    void otherFileSystem_data()
    {
        QTest::addColumn<QByteArray>("options");
        QTest::addColumn<QString>("error");
        QTest::newRow("one page less than file and head-room")
            << QByteArray("size=64m")
            << "libaux FileHandler: not enough space in destination 10006";
        QTest::newRow("enough, but a rename does not get there")
            << QByteArray("size=65m")
            << "libaux FileHandler: moving source file to destination failed 10004";
    }
    void otherFileSystem()
    {
        QFETCH(QByteArray, options);
        mountSmall(inArchive, options.constData());
        const auto unmount = qScopeGuard([] { ::umount(qPrintable(inArchive)); });
        write(inNew + "f", "content");
        QTEST(move(QStringLiteral("f")), "error");
        QCOMPARE(read(inNew + "f"), QByteArray("content"));
        QVERIFY(QDir(inArchive).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestFs)
#include "tst_fs.moc"
