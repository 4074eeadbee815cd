// SPDX-License-Identifier: MIT
#include <aux/fshelper.h>

#include "support/datadirectories.h"
#include "support/observe.h"
#include "support/rows.h"

#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using aux::DirLocation;
using aux::FsHelper;

static int syncs = 0;
extern "C" void sync() noexcept // the library's
{
    ++syncs;
}

static int flushesBeforeRemoval = 0;
static unsigned int flushingTakes = 0; // microseconds
extern "C" int syncfs(int) noexcept    // the library's
{
    ::usleep(flushingTakes);
    flushesBeforeRemoval += QFile::exists(inNew + "f") ? 1 : 0;
    return 0;
}

static bool canKeepNames = true; // as most file systems can
extern "C" int renameat2(int from, const char *name, int to, const char *newName,
                         unsigned int flags) noexcept // the library's
{
    if (canKeepNames)
        return static_cast<int>(::syscall(SYS_renameat2, from, name, to, newName, flags));
    errno = EINVAL;
    return -1;
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
        row("bare name", "f", QString(), QString(), "f");
        row("last components count", "/else/where/f", "x/y.bin", sha256("content"), "y.bin");
    }
    void newFile()
    {
        const auto [name, newName, checksum, moved] = cells<QString, QString, QString, QString>();
        write(inNew + "f", "content");
        QCOMPARE(move(name, newName, checksum), QString());
        QVERIFY(!QFile::exists(inNew + "f"));
        QCOMPARE(read(inArchive + moved), QByteArray("content"));
        QCOMPARE(syncs, 1);
    }

    /// Nothing is lost and nothing is flushed.
    void refusedMove_data()
    {
        const QString mismatch =
            QStringLiteral("libaux FileHandler: source file checksum mismatch 10005");
        const QString missing =
            QStringLiteral("libaux FileHandler: source file does not exist 10002");
        const QString failed =
            QStringLiteral("libaux FileHandler: moving source file to destination failed 10004");
        const QString wrong = sha256("other");
        const QString none;
        row("wrong checksum", "f", none, wrong, mismatch);
        row("empty checksum", "f", none, "", mismatch);
        row("empty checksum of a duplicate", "f", "corrupt", "", mismatch);
        row("missing", "g", none, none, missing);
        row("NUL in the name", QString::fromLatin1("f\0g", 3), none, none, missing);
        row("owner may not read", "unreadable", none, wrong,
            "libaux FileHandler: cannot read source file 10003");
        row("destination is a directory", "f", "directory", none, failed);
        row("new name ends in a separator", "f", "x/", none, failed);
        row("new name is the parent", "f", "..", none, failed);
        row("new name has a NUL", "f", QString::fromLatin1("a\0b", 3), none, failed);
        row("destination is a dangling link", "f", "dangling", none, failed);
        row("source is a directory", "directory", "g", none, failed);
        row("source is a FIFO", "fifo", "g", none, failed);
    }
    void refusedMove()
    {
        const auto [name, newName, checksum, error] = cells<QString, QString, QString, QString>();
        write(inNew + "f", "content");
        write(inNew + "unreadable", "content");
        QFile::setPermissions(inNew + "unreadable", QFileDevice::WriteOwner);
        QDir().mkdir(inNew + "directory");
        ::mkfifo(qPrintable(inNew + "fifo"), 0600);
        write(inArchive + "corrupt", "corrupt");
        QDir().mkdir(inArchive + "directory");
        QFile::link(QStringLiteral("nowhere"), inArchive + "dangling");
        QCOMPARE(move(name, newName, checksum), error);
        QCOMPARE(filesIn(inNew), QStringList({"directory", "f", "fifo", "unreadable"}));
        QCOMPARE(read(inNew + "f"), QByteArray("content"));
        QCOMPARE(read(inArchive + "corrupt"), QByteArray("corrupt"));
        QVERIFY(!QFile::exists(inArchive + "nowhere"));
        QCOMPARE(syncs, 0);
    }

    void duplicate_data()
    {
        row("not checked", QString(), QByteArray("different"));
        row("intact", sha256("content"), QByteArray("content"));
        row("corrupt, the source is not", sha256("content"), QByteArray("corrupt"));
    }
    void duplicate()
    {
        const auto [checksum, there] = cells<QString, QByteArray>();
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
        QCOMPARE(::link(qPrintable(inNew + "f"), qPrintable(inNew + "hard")), 0);
        QCOMPARE(moveHere("f", {}, "link"), QString()); // which would dangle
        QVERIFY(QFile::exists(inNew + "link"));
        QCOMPARE(moveHere("f", {}, "hard"), QString()); // a hard link is a second name
        QVERIFY(!QFile::exists(inNew + "f"));
        QCOMPARE(read(inNew + "hard"), QByteArray("content"));
    }

    /// The one file is there under two names that nothing but its inode connects.
    void mountedOntoTheDestination()
    {
        write(inNew + "f", "content");
        write(inArchive + "f", "");
        QCOMPARE(::mount(qPrintable(inNew + "f"), qPrintable(inArchive + "f"), nullptr, MS_BIND,
                         nullptr),
                 0);
        const QString error = move(QStringLiteral("f"));
        ::umount(qPrintable(inArchive + "f"));
        QCOMPARE(error, QString());
        QCOMPARE(read(inNew + "f"), QByteArray("content"));
    }

    /// Where the file system cannot see to it that the new name is free.
    void plainRename()
    {
        canKeepNames = false;
        const auto restore = qScopeGuard([] { canKeepNames = true; });
        write(inNew + "f", "content");
        QFile::link(QStringLiteral("nowhere"), inArchive + "g");
        QVERIFY(!move(QStringLiteral("f"), QStringLiteral("g")).isEmpty());
        QCOMPARE(move(QStringLiteral("f")), QString());
        QCOMPARE(read(inArchive + "f"), QByteArray("content"));
    }

    /// Each of two equal files is a duplicate of the other.
    void crosswise()
    {
        flushingTakes = 2000; // during which the other move goes on, if it may
        const auto restore = qScopeGuard([] { flushingTakes = 0; });
        write(inNew + "f", "content");
        write(inArchive + "f", "content");
        std::thread other([] {
            QCOMPARE(text(FsHelper::fileMove(DirLocation::Archive, DirLocation::New, "f", {}, false,
                                             {})),
                     QString());
        });
        QCOMPARE(move(QStringLiteral("f")), QString());
        other.join();
        QCOMPARE(filesIn(inNew).size() + filesIn(inArchive).size(), 1);
    }

    void locationsThatAreFiles()
    {
        write(inNew + "f", "content");
        QDir(inArchive).removeRecursively();
        write(QDir::cleanPath(inArchive), "file");
        QCOMPARE(move(QStringLiteral("f")),
                 "libaux FileHandler: destination directory does not exist 10001");
        QCOMPARE(
            text(FsHelper::fileMove(DirLocation::Archive, DirLocation::New, "f", {}, false, {})),
            "libaux FileHandler: source directory does not exist 10001");
        QCOMPARE(read(inNew + "f"), QByteArray("content"));
    }

    /// Whoever may open the directory can lock it, and need not give it up.
    void lockedByAStranger()
    {
        const int lock = ::open("/data", O_RDONLY | O_CLOEXEC);
        QCOMPARE(::flock(lock, LOCK_SH), 0);
        write(inNew + "f", "content");
        QCOMPARE(move(QStringLiteral("f")), QString());
        write(inNew + "f", "content");
        QVERIFY(move(QStringLiteral("f")).startsWith("libaux FileHandler: removing"));
        ::close(lock);
        QCOMPARE(move(QStringLiteral("f")), QString());
    }

    void destinationThatCannotBeListed()
    {
        write(inNew + "f", "content");
        write(inArchive + "f", "content");
        ::chmod(qPrintable(inArchive), 0333);
        const QString error = move(QStringLiteral("f"));
        ::chmod(qPrintable(inArchive), 0700);
        QCOMPARE(error, QString());
        QVERIFY(!QFile::exists(inNew + "f"));
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
        row("one page less than file and head-room", QByteArray("size=64m"),
            "libaux FileHandler: not enough space in destination 10006",
            "/data/zel/rk4/archive: No space left on device");
        row("enough, but a rename does not get there", QByteArray("size=65m"),
            "libaux FileHandler: moving source file to destination failed 10004",
            inArchive + "f: Invalid cross-device link");
    }
    void otherFileSystem()
    {
        const auto [options, message, cause] = cells<QByteArray, QString, QString>();
        const SmallFileSystem other(inArchive, options);
        write(inNew + "f", "content");
        const aux::Error error =
            FsHelper::fileMove(DirLocation::New, DirLocation::Archive, "f", {}, false, {});
        QCOMPARE(text(error), message);
        QCOMPARE(error.getExtraData(), cause);
        QCOMPARE(read(inNew + "f"), QByteArray("content"));
        QVERIFY(QDir(inArchive).isEmpty());
    }
};

QTEST_APPLESS_MAIN(TestFileMove)
#include "tst_filemove.moc"
