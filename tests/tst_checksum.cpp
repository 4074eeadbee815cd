// SPDX-License-Identifier: MIT
#include <aux/fshelper.h>

#include "support/datadirectories.h"
#include "support/observe.h"
#include "support/rows.h"

#include <future>

#include <gcrypt.h>

using aux::FsHelper;

class TestChecksum : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { clearDataDirectories(); }

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
        QCOMPARE(failure(inNew + "missing"), closed);
        QFile::setPermissions(file, {});
        QCOMPARE(failure(file), closed);
        const QString unreadable =
            QStringLiteral("libaux Internal error: path cannot be read 10001");
        QCOMPARE(failure(QStringLiteral("/sys/class/net/lo/mtu")), unreadable);
        QCOMPARE(failure(QStringLiteral("/proc/self/mem")), unreadable); // size 0, read error
    }

    /// In a process of its own: libgcrypt is made ready once.
    void hashingWithTheApplication_data()
    {
        row("the library comes first", false);
        row("the application comes first", true);
    }
    void hashingWithTheApplication()
    {
        const auto [isFirst] = cells<bool>();
        if (!qEnvironmentVariableIsSet("HASHING")) {
            qputenv("HASHING", "1");
            const auto restore = qScopeGuard([] { qunsetenv("HASHING"); });
            const QString name = QString::fromUtf8(QTest::currentDataTag());
            QCOMPARE(QProcess::execute(QCoreApplication::applicationFilePath(),
                                       {"hashingWithTheApplication:" + name}),
                     0);
            return;
        }
        if (isFirst) {
            gcry_check_version(nullptr);
            gcry_control(GCRYCTL_INIT_SECMEM, 16384, 0);
            gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
        }
        std::vector<std::future<QString>> checksums;
        for (char letter = 'a'; letter < 'i'; ++letter) {
            write(inNew + QLatin1Char(letter), QByteArray(1 << 20, letter));
            checksums.push_back(std::async(std::launch::async, [letter] {
                return FsHelper::generateChecksum(inNew + QLatin1Char(letter)).second;
            }));
        }
        for (char letter = 'a'; letter < 'i'; ++letter)
            QCOMPARE(checksums[letter - 'a'].get(), sha256(QByteArray(1 << 20, letter)));
        const std::unique_ptr<void, decltype(&gcry_free)> secret(gcry_malloc_secure(16), gcry_free);
        QCOMPARE(gcry_is_secure(secret.get()) != 0, isFirst); // as it has asked for
    }

    void validation_data()
    {
        // no line: valid
        const QString file = inNew + "f";
        const QString good = sha256("content");
        row("right", file, good, QString());
        row("no path", "", "", "validateChecksum : invalid path parameter");
        row("no checksum", file, "", "validateChecksum : invalid checksum parameter");
        row("missing", inNew + "g", good, "validateChecksum : path does not exist");
        row("upper case", file, good.toUpper(), "validateChecksum : checksum mismatch");
        row("a directory", inNew, good,
            "validateChecksum :  \"libaux\" \"Internal error: path cannot be opened\" 10001 \n");
    }
    void validation()
    {
        const auto [path, checksum, line] = cells<QString, QString, QString>();
        write(inNew + "f", "content");
        const MessageLog log;
        QCOMPARE(FsHelper::validateChecksum(path, checksum), line.isNull());
        QCOMPARE(log.take(), line.isNull() ? QStringList() : QStringList(line));
    }
};

QTEST_GUILESS_MAIN(TestChecksum)
#include "tst_checksum.moc"
