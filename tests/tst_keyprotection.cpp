// SPDX-License-Identifier: MIT
#include <aux/datahelper.h>

#include "support/datadirectories.h"
#include "support/observe.h"
#include "support/rows.h"
#include "support/world.h"

#include <QtTest>

#include <csignal>

#include <sys/stat.h>

using aux::DataHelper;

namespace
{

const QString dir = QStringLiteral("/data/box/");

int modeOf(const QString &path)
{
    struct stat status {
    };
    return ::stat(qPrintable(path), &status) == 0 ? static_cast<int>(status.st_mode & 07777) : -1;
}

} // namespace

class TestKeyProtection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        clear(dir);
        clearTmp();
        clear("/data/small");
    }

    void xorIsItsOwnInverse_data()
    {
        columns<QByteArray, QByteArray, QByteArray>("data", "key", "result");
        row("key repeated", QByteArray("\x01\x02\x03"), QByteArray("\xff\x0f"),
            QByteArray("\xfe\x0d\xfc"));
        row("key longer", QByteArray("a"), QByteArray("  "), QByteArray("A"));
        row("key empty", QByteArray("abc"), QByteArray(), QByteArray("abc"));
        row("data empty", QByteArray(), QByteArray("k"), QByteArray());
        row("zero bytes", QByteArray("a\0b", 3), QByteArray("\0b", 2), QByteArray("ab\x62", 3));
    }
    void xorIsItsOwnInverse()
    {
        QFETCH(QByteArray, data);
        QFETCH(QByteArray, key);
        QTEST(DataHelper::xorByteArray(data, key), "result");
        QCOMPARE(DataHelper::xorByteArray(DataHelper::xorByteArray(data, key), key), data);
    }

    void keysComeBack()
    {
        const QByteArray key = QByteArray::fromHex("00ff800a0d") + QByteArray(5000, 'k');
        const QString passPhrase = QStringLiteral("Größe €\n");
        const auto [error, text] = DataHelper::encryptKeyB64(key, passPhrase);
        QCOMPARE(::text(error), QString());
        QCOMPARE(text.left(8), QString("R41DvM70"));
        QVERIFY(!text.contains('\n'));
        const auto [backError, back] = DataHelper::decryptKeyB64(text, passPhrase);
        QCOMPARE(::text(backError), QString());
        QCOMPARE(back, key);

        const auto [fileError, path] = DataHelper::decryptKeyB64StoreToTemp(text, passPhrase);
        QCOMPARE(::text(fileError), QString());
        QCOMPARE(QFileInfo(path).path(), QString("/tmp"));
        QCOMPARE(read(path), key);
        QCOMPARE(modeOf(path), 0600);
    }

    void keysThatDoNotComeBack_data()
    {
        columns<QString, QString, QString>("text", "passPhrase", "reason");
        row("no pass phrase", QString("QUJD"), QString(), QString("pass phrase is empty"));
        for (const char *text : {"QUJD\n", " QUJD", "QUJ D", "QUI", "QUJ", "QUJ=", "Q", "=", "QÄJD",
                                 "QUJD€", "QU-_", "QUI=QUI="})
            row(text, QString(text), QString("p"), QString("key is not base64"));
    }
    void keysThatDoNotComeBack()
    {
        QFETCH(QString, text);
        QFETCH(QString, passPhrase);
        QFETCH(QString, reason);
        const auto [error, key] = DataHelper::decryptKeyB64(text, passPhrase);
        QCOMPARE(::text(error), QString("libaux decryptKeyB64: %1 10001").arg(reason));
        QVERIFY(key.isEmpty());
        const auto [fileError, path] = DataHelper::decryptKeyB64StoreToTemp(text, passPhrase);
        QCOMPARE(::text(fileError),
                 QString("libaux decryptKeyB64StoreToTemp: %1 10001").arg(reason));
        QVERIFY(path.isEmpty());
        QCOMPARE(filesInTmp(), QStringList());
    }

    void keysAreNotLeftInTheClear()
    {
        QCOMPARE(text(DataHelper::encryptKeyB64("key", {}).first),
                 QString("libaux encryptKeyB64: pass phrase is empty 10001"));
        const QString failed =
            "libaux decryptKeyB64StoreToTemp: Failed to write to output file 10001";
        const QString longKey = QByteArray(1 << 20, 'k').toBase64();
        {
            const SmallFileSystem full("/tmp", "size=64k");
            QCOMPARE(text(DataHelper::decryptKeyB64StoreToTemp(longKey, "p").first), failed);
            QVERIFY(filesIn("/tmp").isEmpty());
        }
        const QStringList root = filesIn("/");
        qputenv("TMPDIR", "/nowhere");
        const auto restore = qScopeGuard([] { qunsetenv("TMPDIR"); });
        QCOMPARE(text(DataHelper::decryptKeyB64StoreToTemp("QUJD", "p").first), failed);
        QCOMPARE(filesIn("/"), root);
    }

    void base64Files()
    {
        const QByteArray content = QByteArray::fromHex("00ff800a0d") + QByteArray(300000, 'x');
        for (const char *name : {"-d", "with blank", "Größe €", "line\nfeed"}) {
            QDir::setCurrent(dir);
            write(name, content);
            QCOMPARE(text(DataHelper::base64encode(name, "--text")), QString());
            QCOMPARE(read("--text").left(76 + 1), content.toBase64().left(76) + '\n');
            QCOMPARE(modeOf("--text"), 0600);
            QCOMPARE(text(DataHelper::base64decode("--text", "--text")), QString()); // onto itself
            QCOMPARE(read("--text"), content);
        }
        std::signal(SIGCHLD, SIG_IGN);
        QCOMPARE(text(DataHelper::base64encode("--text", "ignored")), QString());
        std::signal(SIGCHLD, SIG_DFL);
        // A link of the name gives way, what it leads to stays.
        write("target", "old");
        QFile::link("target", "link");
        QCOMPARE(text(DataHelper::base64("target", "link", false)), QString());
        QCOMPARE(read("target"), QByteArray("old"));
        QVERIFY(!QFileInfo("link").isSymLink());
    }

    void base64Refusals_data()
    {
        columns<QString, QString, QString, QString>("in", "out", "world", "reason");
        const QString cannotRead = "Failed to open file for reading";
        const QString cannotCreate = "Failed to open file for writing";
        row("no input", QString("nowhere"), QString("out"), QString(), cannotRead);
        row("input a directory", QString("."), QString("out"), QString(), cannotRead);
        row("input a pipe", QString("pipe"), QString("out"), QString("mkfifo pipe"), cannotRead);
        row("input with a NUL", "good" + QString(QChar::Null), QString("out"), QString(),
            cannotRead);
        row("output without a name", QString("good"), QString(), QString(), cannotCreate);
        row("output a directory", QString("good"), QString("d"), QString("mkdir d"), cannotCreate);
        row("output a pipe", QString("good"), QString("pipe"), QString("mkfifo pipe"),
            cannotCreate);
        row("output a link to a device", QString("good"), QString("null"),
            QString("ln -s /dev/null null"), cannotCreate);
        row("output where nobody may look", QString("good"), QString("w/out"),
            QString("mkdir -m 333 w"), cannotCreate);
        row("output nowhere", QString("good"), QString("no/out"), QString(), cannotCreate);
        row("output with a NUL", QString("good"), "out" + QString(QChar::Null), QString(),
            cannotCreate);
        row("no base64", QString("bad"), QString("out"), QString(), QString("input is not base64"));
        row("cut off", QString("cut"), QString("out"), QString(), QString("input is not base64"));
        row("storage full", QString("big"), QString("/data/small/out"), QString(),
            QString("Failed to write to output file"));
    }
    void base64Refusals()
    {
        QFETCH(QString, in);
        QFETCH(QString, out);
        QFETCH(QString, world);
        QFETCH(QString, reason);
        const SmallFileSystem small("/data/small", "size=64k");
        QDir::setCurrent(dir);
        write("good", "QUJD");
        write("bad", "QUJD!");
        write("cut", "QUJDR");
        write("big", QByteArray(300000, 'A'));
        write("out", "old");
        run(world.isEmpty() ? "true" : world);
        const QStringList before = filesIn(dir);
        QCOMPARE(text(DataHelper::base64(in, out, true)),
                 QString("libaux base64: %1 10001").arg(reason));
        QCOMPARE(read("out"), QByteArray("old"));
        QCOMPARE(filesIn(dir), before);
        QVERIFY(filesIn("/data/small").isEmpty());
    }

    void programsThatFail_data()
    {
        columns<QByteArray, QString>("script", "reason");
        row("killed half-way", QByteArray("head -c 3; kill -9 $$"), QString("base64 was killed"));
        row("failing", QByteArray("cat; exit 1"), QString("base64 failed"));
        row("missing", QByteArray(), QString("base64 cannot be started"));
    }
    void programsThatFail()
    {
        QFETCH(QByteArray, script);
        QFETCH(QString, reason);
        const QByteArray path = qgetenv("PATH");
        const auto restore = qScopeGuard([&path] { qputenv("PATH", path); });
        fakeProgram("base64", script);
        if (script.isEmpty())
            qputenv("PATH", "/nowhere");
        write(dir + "in", "content");
        for (const auto handling : {SIG_DFL, SIG_IGN}) { // of the end of children
            std::signal(SIGCHLD, handling);
            QCOMPARE(text(DataHelper::base64encode(dir + "in", dir + "out")),
                     QString("libaux base64: %1 10001").arg(reason));
        }
        std::signal(SIGCHLD, SIG_DFL);
        QCOMPARE(filesIn(dir), QStringList("in"));
    }
};

QTEST_GUILESS_MAIN(TestKeyProtection)
#include "tst_keyprotection.moc"
