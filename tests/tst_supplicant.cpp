// SPDX-License-Identifier: MIT
// The whole life of the machine's own daemon, not of a fake.
#include <aux/systemhelper.h>

#include "support/observe.h"
#include "support/world.h"

#include <QtTest>

#include <sys/mount.h>

using aux::SystemHelper;

namespace
{

const QString program = QStringLiteral("/usr/sbin/wpa_supplicant");
const QString controlSocket = QStringLiteral("/var/run/wpa_supplicant/wlan0");
const QString notKilled = QStringLiteral("libaux SystemHelper: wpa_supplicant not killed 10001");

bool runs()
{
    return QProcess::execute("killall", {"-q", "-0", "wpa_supplicant"}) == 0;
}

/// One that can match interfaces by their names (-M) starts nl80211 too, whatever driver is named:
/// seen with version 2.11 of Debian's, which ended there.
bool needsWireless()
{
    return QProcess::execute("sh", {"-c", program + " -h | grep -q ' -M = '"}) == 0;
}

} // namespace

class TestSupplicant : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (needsWireless() && !QFile::exists("/sys/class/ieee80211"))
            QSKIP("this machine's daemon starts on no kernel without Wi-Fi");
        QDir().mkpath("/run/real");
        const QString fake = QFINDTESTDATA("fakes/wpa_supplicant");
        if (!QFile::copy(program, "/run/real/wpa_supplicant") ||
            ::mount(qPrintable(fake), qPrintable(program), nullptr, MS_BIND, nullptr) != 0)
            qFatal("cannot put %s in front of the daemon", qPrintable(fake));
        replace("/etc/wpa_supplicant.conf", "ctrl_interface=/var/run/wpa_supplicant\n");
        run("ip link add wlan0 type veth peer name peer; ip link set wlan0 up; ip link set peer "
            "up");
    }

    void init()
    {
        QVERIFY(!runs());
        QFile::remove(controlSocket);
    }

    void fromStartToStop()
    {
        QCOMPARE(text(SystemHelper::wpaSupplicantStart()), QString());
        QVERIFY(QFile::exists(controlSocket));
        QCOMPARE(text(SystemHelper::wpaSupplicantStart()),
                 QStringLiteral("libaux SystemHelper: cannot start wpa_supplicant, control socket "
                                "already exists 10001"));
        const auto [error, ctrl] = SystemHelper::wpaSupplicantConnect();
        QCOMPARE(text(error), QString());
        QVERIFY(ctrl != nullptr);

        QTRY_VERIFY(SystemHelper::ifaceIsConnected("wlan0"));
        const MessageLog log;
        QVERIFY(SystemHelper::wpaNetworkScan(ctrl).isEmpty());
        QCOMPARE(log.take(), QStringList()); // a table, but only its header
        QCOMPARE(SystemHelper::wpaNetworkStatus(ctrl), std::make_pair(0, true));
        QCOMPARE(log.take(), QStringList("ifaceIsConnected \"wlan0\" : carrier and up"));

        QCOMPARE(text(SystemHelper::wpaSupplicantDisconnect(ctrl)), QString());
        QCOMPARE(text(SystemHelper::wpaSupplicantStop()), QString());
        QTRY_VERIFY(!runs());
        QVERIFY(!QFile::exists(controlSocket));
        QCOMPARE(log.take(), QStringList());
    }

    void killed()
    {
        QCOMPARE(text(SystemHelper::wpaSupplicantStart()), QString());
        QCOMPARE(text(SystemHelper::wpaSupplicantForceKill()), QString());
        QVERIFY(!QFile::exists(controlSocket));
        QTRY_VERIFY(!runs());
        QCOMPARE(text(SystemHelper::wpaSupplicantForceKill()), notKilled);
    }

    void staleSocket()
    {
        QCOMPARE(text(SystemHelper::wpaSupplicantStart()), QString());
        run("killall -9 wpa_supplicant");
        QTRY_VERIFY(!runs());
        QCOMPARE(text(SystemHelper::wpaSupplicantForceKill()), notKilled);
        QVERIFY(QFile::exists(controlSocket));
        const auto [error, ctrl] = SystemHelper::wpaSupplicantConnect();
        QCOMPARE(text(error), QStringLiteral("libaux SystemHelper: cannot open wpa_supplicant "
                                             "control interface 10001"));
        QVERIFY(ctrl == nullptr);
        QCOMPARE(text(SystemHelper::wpaSupplicantStop()),
                 QStringLiteral("libaux SystemHelper: cannot stop wpa_supplicant 10001"));
    }

    void badConfiguration()
    {
        replace("/etc/wpa_supplicant.conf", "no setting\n");
        QCOMPARE(text(SystemHelper::wpaSupplicantStart()),
                 QStringLiteral("libaux SystemHelper: cannot start wpa_supplicant 10001"));
        QVERIFY(!QFile::exists(controlSocket));
    }
};

QTEST_GUILESS_MAIN(TestSupplicant)
#include "tst_supplicant.moc"
