// SPDX-License-Identifier: MIT
#include <aux/fshelper.h>

#include "support/datadirectories.h"
#include "support/observe.h"

#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

using aux::DirLocation;
using aux::FsHelper;

static int syncs = 0;
extern "C" void sync() noexcept // the library's
{
    ++syncs;
}

static int flushesBeforeRemoval = 0;
extern "C" int syncfs(int) noexcept // the library's
{
    flushesBeforeRemoval += QFile::exists(inNew + "f") ? 1 : 0;
    return 0;
}

namespace
{

/// Moves from new to archive.
QString move(const QString &name, const QString &newName = {}, const QString &checksum = {})
{
    return text(FsHelper::fileMove(DirLocation::New, DirLocation::Archive, name, checksum,
                                   !checksum.isNull(), newName));
}

} // namespace

class TestFileMove : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        clearDataDirectories();
        syncs = 0;
        flushesBeforeRemoval = 0;
    }

    void newFile_data()
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
    void newFile()
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
            << QString::fromLatin1("f\0g", 3) << QString() << QString() << missing;
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
        QCOMPARE(flushesBeforeRemoval, 1);
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
        QCOMPARE(moveHere("f", {}, "link"), QString()); // which would dangle
        QVERIFY(QFile::exists(inNew + "link"));
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
        const SmallFileSystem other(inArchive, options);
        write(inNew + "f", "content");
        QTEST(move(QStringLiteral("f")), "error");
        QCOMPARE(read(inNew + "f"), QByteArray("content"));
        QVERIFY(QDir(inArchive).isEmpty());
    }
};

QTEST_APPLESS_MAIN(TestFileMove)
#include "tst_filemove.moc"
