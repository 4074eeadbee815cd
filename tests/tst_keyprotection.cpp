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
        row("key repeated", QByteArray("\x01\x02\x03"), QByteArray("\xff\x0f"),
            QByteArray("\xfe\x0d\xfc"));
        row("key empty", QByteArray("abc"), QByteArray(), QByteArray("abc"));
        row("zero bytes", QByteArray("a\0b", 3), QByteArray("\0b", 2), QByteArray("ab\x62", 3));
    }
    void xorIsItsOwnInverse()
    {
        const auto [data, key, result] = cells<QByteArray, QByteArray, QByteArray>();
        QCOMPARE(DataHelper::xorByteArray(data, key), result);
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
        row("no pass phrase", "QUJD", "", "pass phrase is empty");
        for (const char *text : {"QUJD\n", " QUJD", "QUJ D", "QUI", "QUJ", "QUJ=", "Q", "=", "QÄJD",
                                 "QUJD€", "QU-_", "QUI=QUI="})
            row(text, text, "p", "key is not base64");
    }
    void keysThatDoNotComeBack()
    {
        const auto [text, passPhrase, reason] = cells<QString, QString, QString>();
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
        row("no input", "nowhere", "out", "Failed to open file for reading");
        row("output nowhere", "good", "no/out", "Failed to open file for writing");
        row("no base64", "bad", "out", "input is not base64");
        row("storage full", "big", "/data/small/out", "Failed to write to output file");
    }
    void base64Refusals()
    {
        const auto [in, out, reason] = cells<QString, QString, QString>();
        const SmallFileSystem small("/data/small", "size=64k");
        QDir::setCurrent(dir);
        write("good", "QUJD");
        write("bad", "QUJD!");
        write("big", QByteArray(300000, 'A'));
        write("out", "old");
        QCOMPARE(text(DataHelper::base64(in, out, true)),
                 QString("libaux base64: %1 10001").arg(reason));
        QCOMPARE(read("out"), QByteArray("old"));
        QCOMPARE(filesIn(dir), QStringList({"bad", "big", "good", "out"}));
        QVERIFY(filesIn("/data/small").isEmpty());
    }

    void programsThatFail_data()
    {
        row("killed half-way", QByteArray("head -c 3; kill -9 $$"), "base64 was killed");
        row("failing", QByteArray("cat; exit 1"), "base64 failed");
        row("missing", QByteArray(), "base64 cannot be started");
    }
    void programsThatFail()
    {
        const auto [script, reason] = cells<QByteArray, QString>();
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
