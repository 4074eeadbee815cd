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

    void layout_data()
    {
        columns<Type, QByteArray>("type", "magic");
        row("DDDF", Type::DDDF, QByteArray("ZEL4DDDF"));
        row("LOGF", Type::LOGF, QByteArray("ZEL4LOGF"));
        row("CFGF", Type::CFGF, QByteArray("ZEL4CFGF"));
        row("GPGF", Type::GPGF, QByteArray("ZEL4GPGF"));
        row("UPDF", Type::UPDF, QByteArray("ZEL4UPDF"));
    }
    void layout()
    {
        QFETCH(Type, type);
        QFETCH(QByteArray, magic);
        QCOMPARE(pack(source, type), QString());
        QCOMPARE(read(packed), container("source.ddd", "payload", magic));
        const Unpacked result = unpack();
        QCOMPARE(result.error, QString());
        QVERIFY(QSet<Type>({type}).contains(result.type));
        QCOMPARE(result.file, out + "/source.ddd");
    }

    /// Around the size of a piece; a name of several bytes a character.
    void roundTrip_data()
    {
        QTest::addColumn<int>("size");
        for (const int size : {1, 65535, 65536, 65537, 1000000})
            QTest::addRow("%d bytes", size) << size;
    }
    void roundTrip()
    {
        QFETCH(int, size);
        QByteArray payload;
        while (payload.size() < size)
            payload += QByteArray::number(payload.size());
        payload.truncate(size);
        const QString name = QStringLiteral("Größe €.ddd");
        write(dir + '/' + name, payload);
        QCOMPARE(pack(dir + '/' + name), QString());
        QCOMPARE(unpack().file, out + '/' + name);
        QCOMPARE(read(out + '/' + name), payload);
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
        columns<QString, int, QString, QString>("from", "type", "to", "error");
        const QString notWritten = packError("Failed to open file for writing");
        const QString invalid = packError("Invalid Filetype given");
        row("missing", dir + "/none", 0, packed, packError("Failed to open file for reading"));
        row("no such directory", source, 0, dir + "/none/packed", notWritten);
        row("a payload of 4 GiB", dir + "/huge", 0, packed, notWritten);
        row("NUL in the output", source, 0, packed + QChar(QChar::Null) + "x", notWritten);
        row("onto itself", source, 0, source, notWritten);
        row("onto a link to itself", source, 0, dir + "/link", notWritten);
        row("type Unknown", source, 5, packed, invalid);
        row("type -1", source, -1, packed, invalid);
        row("more content than size", "/proc/self/status", 0, packed,
            packError("Failed to write to output file"));
    }
    void refusedPacking()
    {
        QFETCH(QString, from);
        QFETCH(int, type);
        QFETCH(QString, to);
        write(dir + "/huge", "");
        QVERIFY(QFile::resize(dir + "/huge", 0x100000000));
        QFile::link(source, dir + "/link");
        QTEST(pack(from, static_cast<Type>(type), to), "error");
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
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("error");
        QTest::addColumn<Type>("type"); // UPDF: not looked at
        const QString tooSmall = unpackError("Input file too small");
        const QString notWritten = unpackError("Failed to open file for writing");
        QTest::newRow("49 bytes") << QByteArray(49, 'x') << tooSmall << Type::UPDF;
        QTest::newRow("50 bytes, unknown magic")
            << QByteArray(50, 'x') << unpackError("Invalid magic") << Type::Unknown;
        QTest::newRow("empty payload") << container("name", "") << tooSmall << Type::DDDF;
        for (const quint32 length : {0xFFFFFFFFU, 0xFFFFFFCFU}) {
            QByteArray longName = container("name", "payload");
            longName.replace(40, 4, littleEndian(length));
            QTest::addRow("name of %u bytes", length) << longName << tooSmall << Type::DDDF;
            QByteArray longPayload = container("name", "payload");
            longPayload.replace(48, 4, littleEndian(length));
            QTest::addRow("payload of %u bytes", length) << longPayload << tooSmall << Type::DDDF;
        }
        for (const char *name : {"", ".", "..", "/", "../x", "a/b", "/etc/passwd"})
            QTest::addRow("name \"%s\"", name)
                << container(name, "payload") << notWritten << Type::DDDF;
        QTest::newRow("name with a NUL")
            << container(QByteArray("a\0b", 3), "payload") << notWritten << Type::DDDF;
        QTest::newRow("long name")
            << container(QByteArray(300, 'n'), "payload") << notWritten << Type::DDDF;
    }
    void refusedUnpacking()
    {
        QFETCH(QByteArray, file);
        write(packed, file);
        const Unpacked result = unpack();
        QTEST(result.error, "error");
        QTEST(result.type, "type");
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
        ::link(qPrintable(packed), qPrintable(out + "/source.ddd"));
        QCOMPARE(unpack().error, unpackError("Failed to open file for writing"));
        QCOMPARE(unpack("packed.bin", packed, dir).error,
                 unpackError("Failed to open file for writing"));
        QCOMPARE(read(packed), before);
    }

    /// Wherever it is cut, and whichever bit is wrong: an error, and nothing outside the directory.
    void damagedContainers()
    {
        const QByteArray whole = container("name", "payload");
        for (int length = 0; length < whole.size(); ++length) {
            write(packed, whole.left(length));
            QCOMPARE(unpack().error, unpackError("Input file too small"));
        }
        QVERIFY(filesIn(out).isEmpty());
        for (int bit = 0; bit < 52 * 8; ++bit) {
            QByteArray damaged = whole;
            damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
            write(packed, damaged);
            // A wrong name is the one thing that nothing tells.
            QCOMPARE(unpack().error.isEmpty(), bit >= 44 * 8 && bit < 48 * 8);
        }
        QCOMPARE(filesIn(dir), QStringList({"out", "packed.bin", "source.ddd"}));
    }
};

QTEST_APPLESS_MAIN(TestContainer)
#include "tst_container.moc"
