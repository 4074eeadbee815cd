// SPDX-License-Identifier: MIT
#include <aux/systemhelper.h>

#include "support/observe.h"
#include "support/rows.h"
#include "support/world.h"

#include <QStorageInfo>
#include <QTimeZone>

#include <cerrno>
#include <csignal>

#include <sys/time.h>

using aux::SystemHelper;

namespace
{

QStringList commands;
int shellResult = 0;
bool shellIsReal = false;

QVector<qint64> clockSettings; // in microseconds
int clockError = 0;

} // namespace

extern "C" int system(const char *command) // the library's
{
    commands += command;
    return shellIsReal ? QProcess::execute("sh", {"-c", command}) : shellResult;
}

extern "C" int settimeofday(const timeval *tv, const struct timezone *tz) noexcept
{
    if (tz != nullptr)
        qFatal("a time zone is set");
    clockSettings += tv->tv_sec * 1000000LL + tv->tv_usec;
    errno = clockError;
    return clockError == 0 ? 0 : -1;
}

using Operation = aux::Error (*)();
Q_DECLARE_METATYPE(Operation)

class TestSystemHelper : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        commands.clear();
        clockSettings.clear();
    }

    void clock_data()
    {
        const QDateTime time({2024, 2, 29}, {12, 34, 56, 999}, QTimeZone(3600));
        const QString invalid = "Timezone (or something else) is invalid.";
        row("set", time, 0, "");
        row("EFAULT", time, EFAULT,
            "One of tv or tz pointed outside the accessible address space.");
        row("EINVAL", time, EINVAL, invalid);
        row("EPERM", time, EPERM,
            "The calling process has insufficient privilege to call settimeofday(); under Linux "
            "the CAP_SYS_TIME capability is required.");
        row("without a meaning", time, ENOSYS, "");
        row("invalid time", QDateTime(), 0, invalid);
    }
    void clock()
    {
        const auto [time, error, message] = cells<QDateTime, int, QString>();
        fakeProgram("hwclock", "echo \"$*\" >/tmp/hwclock");
        replace("/tmp/hwclock", "");
        shellIsReal = true;
        clockError = error;
        const MessageLog log;
        SystemHelper::setSystemTime(time);
        QCOMPARE(log.take().join('\n'), message);
        QCOMPARE(clockSettings, time.isValid() ? QVector<qint64>{1709206496000000} // 11:34:56 UTC
                                               : QVector<qint64>{});
        QCOMPARE(read("/tmp/hwclock"),
                 QByteArray(error == 0 && time.isValid() ? "--systohc -u\n" : ""));
    }

    void remount()
    {
        const MessageLog log;
        SystemHelper::remountReadOnly({});
        QCOMPARE(commands + log.take(), QStringList());
        shellIsReal = false;
        SystemHelper::remountReadOnly("/with a blank/\u00e4");
        const QString command = QStringLiteral("/bin/mount -o remount,ro /with a blank/\u00e4");
        QCOMPARE(commands, QStringList(command));
        QCOMPARE(log.take(), QStringList("remountReadOnly : trying:  \"" + command + '"'));

        // Not tmpfs: an ordinary user cannot remount one in a private world.
        run("mkdir /data/storage; mount -t ramfs storage /data/storage");
        shellIsReal = true;
        SystemHelper::remountReadOnly("/data/storage");
        QVERIFY(QStorageInfo("/data/storage").isReadOnly());
    }

    void daemon_data()
    {
        const Operation start = SystemHelper::wpaSupplicantStart;
        const Operation stop = SystemHelper::wpaSupplicantStop;
        const Operation kill = SystemHelper::wpaSupplicantForceKill;
        const QString starting =
            "/usr/sbin/wpa_supplicant -B -Dnl80211 -iwlan0 -c/etc/wpa_supplicant.conf";
        const QString stopping = "/usr/sbin/wpa_cli -iwlan0 terminate";
        const QString killing = "killall -9 wpa_supplicant";
        const QString notStarted = "cannot start wpa_supplicant";
        const QString notStopped = "cannot stop wpa_supplicant";
        row("start", start, false, 0, "", starting, false);
        row("start fails", start, false, 256, notStarted, starting, false);
        row("stale socket", start, true, 0, notStarted + ", control socket already exists", "",
            true);
        row("stop", stop, true, 0, "", stopping, true);
        row("stop fails", stop, true, 256, notStopped, stopping, true);
        row("no socket", stop, false, 0, notStopped + ", control socket does not exist", "", false);
        row("kill", kill, true, 0, "", killing, false);
        row("kill fails", kill, true, 256, "wpa_supplicant not killed", killing, true);
    }
    void daemon()
    {
        const auto [operation, socket, result, error, command, socketLeft] =
            cells<Operation, bool, int, QString, QString, bool>();
        clear("/run/wpa_supplicant");
        const QString path = "/run/wpa_supplicant/wlan0";
        if (socket)
            write(path, "stale");
        shellIsReal = false;
        shellResult = result;
        const MessageLog log;
        QCOMPARE(text(operation()),
                 error.isEmpty() ? QString() : "libaux SystemHelper: " + error + " 10001");
        QCOMPARE(commands.join('\n'), command);
        QCOMPARE(QFile::exists(path), socketLeft);
        QCOMPARE(log.take(), QStringList());
    }

    /// The kernel takes the end of every child then.
    void withoutSignalsOfChildren()
    {
        std::signal(SIGCHLD, SIG_IGN);
        const auto restore = qScopeGuard([] { std::signal(SIGCHLD, SIG_DFL); });
        for (const bool fails : {false, true}) {
            fakeProgram("killall", fails ? "exit 1" : "exit 0");
            QCOMPARE(SystemHelper::wpaSupplicantForceKill().hasError(), fails);
        }
    }

    void links_data()
    {
        const QString closed = ": error opening sysfs entry for \"eth0\"";
        row("missing", ":", "eth0", ": sysfs entry missing:  \"/sys/class/net/eth0\"");
        row("down", "ip link add eth0 type veth peer name p", "eth0", "\"eth0\" : no carrier");
        row("no peer", "ip link set eth0 up", "eth0", "\"eth0\" : no carrier");
        row("connected", "ip link set p up", "eth0", "\"eth0\" : carrier and up");
        row("dormant", "ip link set p mode dormant state dormant", "p", "\"p\" : not up");
        row("a state that only contains up",
            "echo lowerlayerup >/tmp/state; mount --bind /tmp/state /sys/class/net/p/operstate",
            "p", "\"p\" : not up");
        row("unknown", "ip link set lo up", "lo", "\"lo\" : not up");
        row("state unreadable", "chmod 0 /sys/class/net/eth0/operstate", "eth0", closed);
        row("carrier unreadable", "chmod 0 /sys/class/net/eth0/carrier", "eth0", closed);
        row("no name", ":", "", ": sysfs entry missing:  \"/sys/class/net/\"");
    }
    /// Each row starts where the one before has left the interfaces.
    void links()
    {
        const auto [change, interface, message] = cells<QString, QString, QString>();
        run(change);
        const MessageLog log;
        bool connected = false;
        QString last;
        const auto ask = [&, name = interface] {
            connected = name == "eth0" ? SystemHelper::lanNetworkStatus()
                                       : SystemHelper::ifaceIsConnected(name);
            last = MessageLog::take().join('\n');
            return last;
        };
        QTRY_COMPARE(ask(), "ifaceIsConnected " + message); // the kernel's link watch
        QCOMPARE(connected, message.endsWith("and up"));
    }
};

QTEST_GUILESS_MAIN(TestSystemHelper)
#include "tst_systemhelper.moc"
