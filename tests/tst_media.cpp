// SPDX-License-Identifier: MIT
// Packing and unpacking where files and media are not what they should be.
#include <aux/fshelper.h>

#include "support/containers.h"
#include "support/packing.h"
#include "support/rows.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

static qint64 failsAt = -1; // the offset from which on a medium cannot be read; -1: none
static int failsWith = 0;   // the errno; 0: it ends there

extern "C" ssize_t read(int file, void *data, std::size_t size) // the library's
{
    const qint64 offset = failsAt < 0 ? -1 : ::lseek(file, 0, SEEK_CUR);
    if (offset >= 0 && offset + static_cast<qint64>(size) > failsAt) {
        errno = failsWith;
        return failsWith == 0 ? 0 : -1;
    }
    return ::syscall(SYS_read, file, data, size);
}

class TestMedia : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { clearBox(); }

    /// Refused at once and left as it is, whatever it is.
    void notARegularFile_data()
    {
        for (const char *name : {"fifo", "socket", "device", "directory"})
            row(name, QString(name));
    }
    void notARegularFile()
    {
        const auto name = cell<QString>();
        const QString path = out + '/' + name;
        ::mkfifo(qPrintable(out + "/fifo"), 0600);
        sockaddr_un address{AF_UNIX, "/data/box/out/socket"};
        const int listener = ::socket(AF_UNIX, SOCK_STREAM, 0);
        QCOMPARE(::bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
        ::close(listener);
        QFile::link("/dev/zero", out + "/device");
        QDir().mkdir(out + "/directory");
        QCOMPARE(pack(), QString());
        const aux::Error error = DataHelper::packFileToBinContainer(path, Type::DDDF, packed + 'x');
        QCOMPARE(text(error), packError("Failed to open file for reading"));
        QCOMPARE(error.getExtraData(), path + ": not a regular file");
        QCOMPARE(pack(source, Type::DDDF, path), packError("Failed to open file for writing"));
        QCOMPARE(unpack({}, path).error, unpackError("Failed to open file for reading"));
        QCOMPARE(unpack(name).error, unpackError("Failed to open file for writing"));
        QCOMPARE(text(aux::FsHelper::generateChecksum(path).first),
                 QString("libaux Internal error: path cannot be opened 10001"));
        QCOMPARE(filesIn(out), QStringList({"device", "directory", "fifo", "socket"}));
    }

    void failingMedium_data()
    {
        row("cannot be read", EIO, ": Input/output error");
        row("becomes shorter", 0, ": shorter than its size");
    }
    void failingMedium()
    {
        const auto [number, cause] = cells<int, QString>();
        failsWith = number;
        const auto restore = qScopeGuard([] { failsAt = -1; });
        const QString large = dir + "/large"; // the largest payload
        write(large, "");
        QVERIFY(QFile::resize(large, 0xFFFFFFFF));
        failsAt = 300000;
        aux::Error result = DataHelper::packFileToBinContainer(large, Type::DDDF, packed);
        QCOMPARE(text(result), QString("libaux Internal error: path cannot be read 10001"));
        QCOMPARE(result.getExtraData(), large + cause);
        QVERIFY(!QFile::exists(packed));
        failsAt = -1;
        write(packed, container("name", QByteArray(300000, 'x')));
        for (const qint64 offset : {0, 44, 48, 250000}) {
            failsAt = offset;
            Type type = Type::Unknown;
            QString file;
            result = DataHelper::unpackFileFromBinContainer(packed, type, out, file);
            QCOMPARE(text(result), unpackError("Failed to open file for reading"));
            QCOMPARE(result.getExtraData(), packed + cause);
            QVERIFY(filesIn(out).isEmpty());
        }
    }

    void fullDisk()
    {
        write(source, QByteArray(100000, 'x'));
        QCOMPARE(pack(), QString());
        const SmallFileSystem full(out, "size=8k");
        QCOMPARE(pack(source, Type::DDDF, out + "/p"), packError("Failed to write to output file"));
        QVERIFY(filesIn(out).isEmpty());
        QCOMPARE(unpack().error, unpackError("Failed to write to output file"));
        QVERIFY(filesIn(out).isEmpty());
    }
};

QTEST_APPLESS_MAIN(TestMedia)
#include "tst_media.moc"
