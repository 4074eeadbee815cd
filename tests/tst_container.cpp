// SPDX-License-Identifier: MIT
#include "support/containers.h"
#include "support/packing.h"
#include "support/rows.h"

#include <sys/stat.h>
#include <unistd.h>

Q_DECLARE_METATYPE(Type)

class TestContainer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { clearBox(); }

    /// Of every type; sizes around that of a piece; a name of several bytes a character.
    void roundTrip_data()
    {
        row("1 byte", Type::DDDF, QByteArray("ZEL4DDDF"), 1);
        row("a piece less one", Type::LOGF, QByteArray("ZEL4LOGF"), 65535);
        row("a piece", Type::CFGF, QByteArray("ZEL4CFGF"), 65536);
        row("a piece and one", Type::GPGF, QByteArray("ZEL4GPGF"), 65537);
        row("many pieces", Type::UPDF, QByteArray("ZEL4UPDF"), 1000000);
    }
    void roundTrip()
    {
        const auto [type, magic, size] = cells<Type, QByteArray, int>();
        QByteArray payload;
        while (payload.size() < size)
            payload += QByteArray::number(payload.size());
        payload.truncate(size);
        const QString name = QStringLiteral("Größe €.ddd");
        write(dir + '/' + name, payload);
        QCOMPARE(pack(dir + '/' + name, type), QString());
        QCOMPARE(read(packed), container(name.toUtf8(), payload, magic));
        const Unpacked result = unpack();
        QCOMPARE(result.error, QString());
        QCOMPARE(result.type, type);
        QCOMPARE(result.file, out + '/' + name);
        QCOMPARE(read(result.file), payload);
    }

    void callersNameWins()
    {
        QCOMPARE(pack(), QString());
        write(packed, read(packed) + "bytes after the payload");
        const Unpacked result = unpack(QStringLiteral("../named"));
        QCOMPARE(result.error, QString());
        QCOMPARE(result.file, out + "/../named");
        QCOMPARE(read(dir + "/named"), QByteArray("payload"));
        QVERIFY(filesIn(out).isEmpty());
    }

    void refusedPacking_data()
    {
        const QString notWritten = packError("Failed to open file for writing");
        const QString invalid = packError("Invalid Filetype given");
        row("missing", dir + "/none", 0, packed, packError("Failed to open file for reading"));
        row("no such directory", source, 0, dir + "/none/packed", notWritten);
        row("a payload of 4 GiB", dir + "/huge", 0, packed, notWritten);
        row("NUL in the output", source, 0, packed + QChar(QChar::Null) + "x", notWritten);
        row("onto itself", source, 0, source, notWritten);
        row("onto a link to itself", source, 0, dir + "/link", notWritten);
        row("type Unknown", source, static_cast<int>(Type::Unknown), packed, invalid);
        row("type -1", source, -1, packed, invalid);
        row("more content than size", "/proc/self/status", 0, packed,
            packError("Failed to write to output file"));
    }
    void refusedPacking()
    {
        const auto [from, type, to, error] = cells<QString, int, QString, QString>();
        write(dir + "/huge", "");
        QVERIFY(QFile::resize(dir + "/huge", 0x100000000));
        QFile::link(source, dir + "/link");
        QCOMPARE(pack(from, static_cast<Type>(type), to), error);
        QVERIFY(!QFile::exists(packed));
        QCOMPARE(read(source), QByteArray("payload"));
    }

    void checksumFailureIsPassedOn()
    {
        const MessageLog log;
        QCOMPARE(pack(QStringLiteral("/sys/class/net/lo/mtu")),
                 QStringLiteral("libaux Internal error: path cannot be read 10001"));
        QCOMPARE(log.take(), QStringList("packFileToBinContainer :  \"libaux\" "
                                         "\"Internal error: path cannot be read\" 10001 \n"));
        QVERIFY(!QFile::exists(packed));
    }

    void refusedUnpacking_data()
    {
        const QString tooSmall = unpackError("Input file too small");
        const QString notWritten = unpackError("Failed to open file for writing");
        row("49 bytes", QByteArray(49, 'x'), tooSmall, Type::UPDF); // not looked at
        row("50 bytes, unknown magic", QByteArray(50, 'x'), unpackError("Invalid magic"),
            Type::Unknown);
        row("cut off", container("name", "payload").chopped(1), tooSmall, Type::DDDF);
        row("empty payload", container("name", ""), tooSmall, Type::DDDF);
        for (const int position : {40, 48}) { // of the lengths of name and payload
            for (const quint32 length : {0xFFFFFFFFU, 0xFFFFFFCFU}) {
                QByteArray file = container("name", "payload");
                file.replace(position, 4, littleEndian(length));
                row(littleEndian(length).toHex().constData(), file, tooSmall, Type::DDDF);
            }
        }
        for (const char *name : {"", ".", "..", "/", "../x", "a/b", "/etc/passwd"})
            row(name, container(name, "payload"), notWritten, Type::DDDF);
        row("name with a NUL", container(QByteArray("a\0b", 3), "payload"), notWritten, Type::DDDF);
        row("long name", container(QByteArray(300, 'n'), "payload"), notWritten, Type::DDDF);
    }
    void refusedUnpacking()
    {
        const auto [file, error, type] = cells<QByteArray, QString, Type>();
        write(packed, file);
        const Unpacked result = unpack();
        QCOMPARE(result.error, error);
        QCOMPARE(result.type, type);
        QVERIFY(result.file.isEmpty());
        QVERIFY(filesIn(out).isEmpty());
        QCOMPARE(filesIn(dir), QStringList({"out", "packed.bin", "source.ddd"}));
        QCOMPARE(unpack({}, dir + "/none").error, unpackError("Failed to open file for reading"));
    }

    /// With an empty payload one byte must follow.
    void emptyPayload()
    {
        write(packed, container("name", "") + "x");
        QCOMPARE(unpack().error, QString());
        QCOMPARE(read(out + "/name"), QByteArray(""));
    }

    void alteredPayloadStays()
    {
        QByteArray altered = container("name", "payload");
        altered[altered.size() - 1] = 'X';
        write(packed, altered);
        const Unpacked result = unpack();
        QCOMPARE(result.error, unpackError("SHA256sum check failed"));
        QVERIFY(result.file.isEmpty());
        QCOMPARE(read(out + "/name"), QByteArray("payloaX"));
    }

    void outputThatCannotBeChecked()
    {
        QCOMPARE(pack(), QString());
        const mode_t before = ::umask(0777);
        const auto restore = qScopeGuard([before] { ::umask(before); });
        const MessageLog log;
        const Unpacked result = unpack();
        QCOMPARE(result.error, QString("libaux Internal error: path cannot be opened 10001"));
        QCOMPARE(log.take(), QStringList("unpackFileFromBinContainer :  \"libaux\" "
                                         "\"Internal error: path cannot be opened\" 10001 \n"));
        QVERIFY(result.file.isEmpty());
        QCOMPARE(filesIn(out), QStringList("source.ddd"));
    }

    /// The output must not be the input, under any name.
    void unpackingOntoTheContainer()
    {
        QCOMPARE(pack(), QString());
        const QByteArray before = read(packed);
        QCOMPARE(::link(qPrintable(packed), qPrintable(out + "/source.ddd")), 0);
        QCOMPARE(unpack().error, unpackError("Failed to open file for writing"));
        QCOMPARE(unpack("packed.bin", packed, dir).error,
                 unpackError("Failed to open file for writing"));
        QCOMPARE(read(packed), before);
    }
};

QTEST_APPLESS_MAIN(TestContainer)
#include "tst_container.moc"
