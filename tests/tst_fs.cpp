// SPDX-License-Identifier: MIT
#include <aux/fshelper.h>

#include "support/datadirectories.h"
#include "support/observe.h"

#include <QSet>
#include <QtTest>

using aux::DirLocation;
using aux::FsHelper;

namespace
{

const QString noSuchDirectory = QStringLiteral("libaux FileHelper: directory does not exist 10001");

} // namespace

Q_DECLARE_METATYPE(DirLocation)

class TestFs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { clearDataDirectories(); }

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
        const SmallFileSystem small(inArchive, "size=64k");
        QVERIFY(FsHelper::checkFreeSpace(DirLocation::Archive, 64 * 1024));
        QVERIFY(!FsHelper::checkFreeSpace(DirLocation::Archive, 64 * 1024 + 1));
        QVERIFY(!FsHelper::checkFreeSpace(DirLocation::Transfer, 0)); // missing
    }

    void factoryReset()
    {
        QStringList kept = filesIn("/data") + QStringList("kept"); // the checkout may be below it
        kept.sort();
        clear(QStringLiteral("/data/config/deep/er"));
        write(inNew + "f", "x");
        write(QStringLiteral("/data/kept"), "x");
        QCOMPARE(text(FsHelper::removeEntireDataDir()), QString());
        QCOMPARE(filesIn("/data"), kept);
        QVERIFY(QDir("/data/zel/rk4").isEmpty());
        QCOMPARE(text(FsHelper::removeEntireDataDir()), QString()); // nothing is there any more
        QFile::remove(QStringLiteral("/data/kept"));
    }

    /// A mount point cannot be removed.
    void onlyTheLastRemovalDecides()
    {
        const SmallFileSystem mounted(inNew, "size=64k");
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
};

QTEST_GUILESS_MAIN(TestFs)
#include "tst_fs.moc"
