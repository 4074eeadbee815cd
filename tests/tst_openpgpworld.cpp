// SPDX-License-Identifier: MIT
#include "support/datadirectories.h"
#include "support/openpgp.h"
#include "support/rows.h"
#include "support/waiting.h"
#include "support/world.h"

#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

bool isForeign = false;
bool isImmortal = false;
bool isLocked = false;

} // namespace

/// The library asks it for the owner that its keyring must have.
extern "C" uid_t geteuid() noexcept
{
    return ::getuid() + (isForeign ? 1 : 0);
}

extern "C" int kill(pid_t process, int signal) noexcept
{
    return isImmortal ? 0 : static_cast<int>(::syscall(SYS_kill, process, signal));
}

extern "C" int flock(int file, int operation) noexcept
{
    if (!isLocked || operation == LOCK_UN)
        return static_cast<int>(::syscall(SYS_flock, file, operation));
    errno = EWOULDBLOCK;
    return -1;
}

namespace
{

const KeyPair locked{"locked", othermachine::ed25519 + othermachine::cv25519, "Größe € p"};

} // namespace

/// Encryption in a world that does not go along.
class TestOpenPgpWorld : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { othermachine::makeKey(locked); }
    void init() { prepareWork(); }
    void cleanup()
    {
        isForeign = isImmortal = isLocked = false;
        waiting.skipsPrograms = waiting.skipsPauses = false;
        QDir("/tmp/fakes").removeRecursively();
        checkNothingIsLeft();
    }

    void squattedKeyring_data()
    {
        row("a link to a directory", "mkdir -m 700 real && ln -s $PWD/real $K");
        row("a dangling link", "ln -s $PWD/nowhere $K");
        row("a file", "touch $K && chmod 600 $K");
        row("open to others", "mkdir -m 750 $K && touch $K/mine");
        row("another user's", "mkdir -m 700 $K && touch $K/mine");
    }
    void squattedKeyring()
    {
        const auto world = cell<QString>();
        qputenv("K", keyring.toUtf8());
        write("key", othermachine::exported(locked));
        write("in", "content");
        run(world);
        isForeign = world.startsWith("mkdir -m 700 $K");
        const auto state = [] {
            QProcess find;
            find.start("find", {"/tmp", dir, "-printf", "%p %y %m %l %T@\n"});
            find.waitForFinished();
            return find.readAllStandardOutput();
        };
        const QByteArray before = state();
        const QString refused = keyring + " is not this program's own directory";
        QCOMPARE(text(DataHelper::importKeypairGPG("key")), failure("importKeypairGPG", refused));
        QCOMPARE(encrypt(), failure("encryptFileGPG", refused));
        QCOMPARE(decrypt({}), failure("decryptFileGPG", refused));
        QCOMPARE(text(DataHelper::removeKeypairGPG()), failure("removeKeypairGPG", refused));
        QCOMPARE(state(), before);
        run("rm -rf $K");
    }

    void programsThatFail_data()
    {
        // The reader has had all but what a pipe holds when all are killed.
        row("killed half-way", QByteArray("{ head -c 800000; kill -9 0; } | /usr/bin/gpg \"$@\""),
            "gpg was killed");
        row("hanging", QByteArray("sleep 1000; true"), "gpg did not end in time");
        row("failing at the end", QByteArray("/usr/bin/gpg \"$@\"; exit 2"),
            "message is damaged or was tampered with");
        row("succeeding, silent", QByteArray("echo content"), "input is no encrypted message");
        row("leaving what starts another one at its end",
            QByteArray(
                "case $N in\n"
                "'') N=3 setsid \"$0\" \"$@\" >/dev/null 2>&1 & sleep 0.1;;\n"
                "0) ;;\n"
                "*) trap 'N=$((N - 1)) \"$0\" \"$@\" & exit' TERM; while sleep 0.01; do :; done;;\n"
                "esac"),
            "input is no encrypted message");
        row("missing", QByteArray(), "gpg cannot be started");
    }
    void programsThatFail()
    {
        const auto [script, reason] = cells<QByteArray, QString>();
        const QByteArray path = qgetenv("PATH");
        const auto restore = qScopeGuard([&path] { qputenv("PATH", path); });
        QCOMPARE(importKey(locked), QString());
        const QByteArray content = incompressible(1000000);
        write("in", othermachine::encrypted(content, locked));
        const int descriptors = filesIn("/proc/self/fd").size();
        fakeProgram("gpg", script);
        waiting.skipsPrograms = script.startsWith("sleep");
        if (script.isEmpty())
            qputenv("PATH", "/nowhere");
        QCOMPARE(decrypt(locked.passPhrase), failure("decryptFileGPG", reason));
        QCOMPARE(read("out"), QByteArray("old"));
        QCOMPARE(filesIn("."), QStringList({"in", "out"}));
        QCOMPARE(filesIn("/proc/self/fd").size(), descriptors);
    }

    void whatCannotBeEnded()
    {
        QCOMPARE(importKey(locked), QString());
        write("in", othermachine::encrypted("content", locked));
        waiting.skipsPauses = isImmortal = true;
        QCOMPARE(decrypt(locked.passPhrase),
                 failure("decryptFileGPG", "gpg-agent cannot be ended"));
        QCOMPARE(read("out"), QByteArray("old"));
        isImmortal = false;
        isLocked = true;
        QCOMPARE(decrypt(locked.passPhrase), failure("decryptFileGPG", keyring + " is in use"));
        isLocked = waiting.skipsPauses = false;
        QCOMPARE(decrypt(locked.passPhrase), QString());
    }

    void operationsTakeTurns()
    {
        QCOMPARE(importKey(locked), QString());
        write("in", othermachine::encrypted(QByteArray(100000, 'x'), locked));
        constexpr int times = 4;
        const pid_t child = ::fork();
        if (child == 0) {
            int good = 0;
            for (int time = 0; time < times; ++time)
                good += decrypt(locked.passPhrase, "in", "other").isEmpty() ? 1 : 0;
            ::_exit(good);
        }
        for (int time = 0; time < times; ++time)
            QCOMPARE(decrypt("wrong"), failure("decryptFileGPG", "wrong pass phrase"));
        int status = -1;
        ::waitpid(child, &status, 0);
        QCOMPARE(WEXITSTATUS(status), times);
        QFile::remove("other");
    }

    /// The programs end with their caller, and the next one finds the keyring free.
    void killedCaller()
    {
        QCOMPARE(importKey(locked), QString());
        write("in", othermachine::encrypted("content", locked));
        fakeProgram("gpg", "echo $$ >/data/box/started\nexec sleep 1000");
        const pid_t child = ::fork();
        if (child == 0)
            ::_exit(decrypt(locked.passPhrase).size());
        QTRY_VERIFY(read("started").endsWith('\n'));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        QTRY_VERIFY(!QFile::exists("/proc/" + read("started").trimmed()));
        QFile::remove("/tmp/fakes/gpg");
        QCOMPARE(decrypt(locked.passPhrase), QString());
    }

    void secretsAreSeenByNobody()
    {
        QCOMPARE(importKey(locked), QString());
        write("in", othermachine::encrypted("content", locked));
        fakeProgram("gpg",
                    "tr '\\0' '\\n' </proc/$$/cmdline >/data/box/seen\nenv >>/data/box/seen\n"
                    "cat /proc/$$/limits >>/data/box/seen\n"
                    "exec /usr/bin/gpg \"$@\"");
        const MessageLog log;
        QCOMPARE(decrypt(locked.passPhrase), QString());
        const QByteArray seen = read("seen");
        for (const char *needed :
             {"\n--no-options\n", "\n--homedir\n/tmp/gpg-temp-keyring\n", "\n--disable-dirmngr\n",
              "\n--no-auto-key-locate\n", "\n--no-symkey-cache\n", "\nLC_ALL=C\n",
              "\nMax data size             251658240 "})
            QVERIFY2(seen.contains(needed), needed);
        QVERIFY(!seen.contains(locked.passPhrase.toUtf8()));
        QCOMPARE(log.take(), QStringList());
    }

    /// Where the user has a directory below /run, gpg puts its sockets there.
    void socketsBelowRun()
    {
        const QByteArray pair = othermachine::exported(locked);
        clear("/run/user/0");
        QFile::setPermissions("/run/user/0", QFileDevice::Permissions(0x7000));
        const auto restore = qScopeGuard([] { QDir("/run/user").removeRecursively(); });
        QCOMPARE(importKey(pair), QString());
        QVERIFY(!filesIn("/run/user/0/gnupg").isEmpty());
        QCOMPARE(text(DataHelper::removeKeypairGPG()), QString());
        QCOMPARE(filesIn("/run/user/0/gnupg"), QStringList());
    }

    /// A daemon may have closed its standard streams; the files then get their numbers.
    void closedStreams()
    {
        QCOMPARE(importKey(locked), QString());
        write("in", "content");
        const pid_t child = ::fork();
        if (child == 0) {
            for (int stream = 0; stream <= STDERR_FILENO; ++stream)
                ::close(stream);
            const bool isDone = encrypt("in", "in").isEmpty() &&
                                decrypt(locked.passPhrase, "in", "out").isEmpty() &&
                                !DataHelper::base64encode("out", "out").hasError();
            ::_exit(isDone ? 0 : 1);
        }
        int status = -1;
        ::waitpid(child, &status, 0);
        QCOMPARE(status, 0);
        QCOMPARE(read("out"), QByteArray("Y29udGVudA==\n"));
    }

    void noRoomForTheKeyring()
    {
        write("key", othermachine::exported(locked));
        const auto importInto = [](const QByteArray &options) {
            const SmallFileSystem small("/tmp", options);
            return text(DataHelper::importKeypairGPG("key"));
        };
        QCOMPARE(importInto("size=16k"), failure("importKeypairGPG", "no room in " + keyring));
        QCOMPARE(importInto("nr_inodes=1"),
                 failure("importKeypairGPG", keyring + " cannot be made"));
    }

    /// A small message may decrypt to any size.
    void storageFull_data()
    {
        row("with less from the start", QByteArray("size=63m"), false);
        row("with less in the end", QByteArray("size=66m"), false);
        row("hardly", QByteArray("size=68m"), true);
    }
    void storageFull()
    {
        const auto [size, isEnough] = cells<QByteArray, bool>();
        QCOMPARE(importKey(locked), QString());
        clear("/data/small");
        const SmallFileSystem small("/data/small", size);
        write("in", othermachine::encrypted(QByteArray(3 << 20, 'x'), locked));
        const QString out = "/data/small/out";
        const aux::Error error = DataHelper::decryptFileGPG("in", out, locked.passPhrase);
        QCOMPARE(text(error), isEnough
                                  ? QString()
                                  : failure("decryptFileGPG", "Failed to write to output file"));
        QCOMPARE(error.getExtraData(), isEnough ? QString() : out + ": No space left on device");
        QCOMPARE(QFile::exists(out), isEnough);
    }
};

QTEST_GUILESS_MAIN(TestOpenPgpWorld)
#include "tst_openpgpworld.moc"
