// SPDX-License-Identifier: MIT
#include <aux/systemhelper.h>

#include "support/fakesupplicant.h"
#include "support/observe.h"
#include "support/pace.h"
#include "support/rows.h"
#include "support/world.h"
#include "system/scantable.h"

#include <climits>

using aux::SystemHelper;
using Answers = FakeSupplicant::Answers;

namespace
{

std::atomic<bool> numberingIsWatched = false;
std::atomic<int> numbering = 0;
std::atomic<bool> numberedAtOnce = false;

} // namespace

/// What the control library calls when it numbers a socket.
extern "C" pid_t getpid() noexcept
{
    static const auto real = original<decltype(getpid)>("getpid", "getpid");
    if (numberingIsWatched) {
        if (++numbering > 1)
            numberedAtOnce = true;
        ::usleep(20000);
        --numbering;
    }
    return real();
}

namespace
{

const QByteArray header = "bssid / frequency / signal level / flags / ssid\n";

QByteArray line(const QByteArray &essid, const QByteArray &level, const QByteArray &flags = "[ESS]")
{
    return "00:11:22:33:44:55\t2412\t" + level + '\t' + flags + '\t' + essid + '\n';
}

QString graded(int level)
{
    return QStringLiteral("wpaInfoLevelToQuality : level:  %1").arg(level);
}

/// What was logged but for the grades.
QString complaints()
{
    const QRegularExpression others("^(?!wpaInfoLevelToQuality)");
    return MessageLog::take().filter(others).join('\n');
}

/// The message that this line is left out.
QString skipped(const char *reason, QByteArray line)
{
    line.chop(1);
    return QStringLiteral("wpaInfoFromScanResultString : %1, skipping:  \"%2\"")
        .arg(reason, QString::fromLatin1(line.replace('\t', "\\t")));
}

/// "NAME,QUALITY,SECURITY NAME,..."
QString shown(const QVector<SystemHelper::WifiInfo> &networks)
{
    QStringList list;
    for (const auto &network : networks)
        list += QString("%1,%2,%3").arg(network.essid).arg(network.quality).arg(network.security);
    return list.join(' ');
}

/// The control library's sockets of this process.
int clientSockets()
{
    return QDir("/tmp").entryList({"wpa_ctrl_*"}, QDir::System).size();
}

} // namespace

Q_DECLARE_METATYPE(Answers)

class TestWifi : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { run("ip link add wlan0 type veth peer name peer; ip link set peer up"); }

    void grades()
    {
        const MessageLog log;
        const std::pair<int, int> grades[] = {
            {INT_MIN, 4}, {-121, 4}, {-120, 0}, {-81, 0}, {-80, 1}, {-66, 1},    {-65, 2},
            {-51, 2},     {-50, 3},  {-1, 3},   {0, 4},   {1, 4},   {INT_MAX, 4}};
        for (const auto &[level, quality] : grades) {
            QCOMPARE(aux::wpaInfoLevelToQuality(level), quality);
            QCOMPARE(log.take(), QStringList(graded(level)));
        }
    }

    void table_data()
    {
        row("nothing but the header", QByteArray("\n\n"), "", "");
        row("best first, each name once",
            line("a", "-70") + line("b", "-55") + line("a", "-45", "") + line("A", "-90") + "\n",
            "a,3,0 b,2,1 A,0,1", "");
        row("security, and the weakest",
            line("a", "-120", "[WPA2-PSK-CCMP][ESS]") + line("b", "-120", "[wpa2-psk]") +
                line("c", "-120", ""),
            "a,0,2 b,0,1 c,0,0", "");
        row("blanks, escapes and bytes in a name",
            line(" x ", "-60") + line(R"(\x00\\)", "-60") + line("\xe4", "-60"),
            QString::fromLatin1(" x ,2,1 \\x00\\\\,2,1 \xe4,2,1"), "");
        const auto left = [](const char *reason, const QByteArray &line) {
            row(line.constData(), line, "", skipped(reason, line));
        };
        left("line parse error", "bssid\t2412\t-50\t[ESS]\n");
        left("line parse error", line("x\t", "-50"));
        left("empty ESSID", line("", "0"));
        left("ESSID contains all-whitespace", line(" ", "0"));
        for (const char *level : {"-121", "0", "-5x", "-9e9"})
            left("ESSID has implausible signal level", line("x", level));
    }
    void table()
    {
        const auto [lines, networks, messages] = cells<QByteArray, QString, QString>();
        const MessageLog log;
        QCOMPARE(shown(aux::networksFromScanTable(QString::fromLatin1(header + lines))), networks);
        QCOMPARE(complaints(), messages);
    }

    void scan_data()
    {
        const QByteArray event = "<3>CTRL-EVENT-SCAN-RESULTS ";
        const QByteArray a = header + line("a", "-70");
        const QString operation = "wpaNetworkScan : ";
        const auto results = [](const QByteArray &answer) {
            return Answers{{"SCAN_RESULTS", {answer}}};
        };
        row("a scan that fails does not matter",
            Answers{{"SCAN", {"FAIL-BUSY\n"}}, {"SCAN_RESULTS", {a}}}, "a,1,1", "");
        row("events between the answers",
            Answers{{"SCAN", {event, "OK\n"}}, {"SCAN_RESULTS", {event, event, a}}}, "a,1,1", "");
        row("up to the first zero byte", results(a + '\0' + a), "a,1,1", "");
        row("zero byte first", results(QByteArray("\0a", 2)), "", operation + "empty scan result");
        row("no byte at all", results(""), "", operation + "empty scan result");
        row("no table", results("UNKNOWN COMMAND\n"), "", "");
        row("no end", results(QByteArray(10000, 'x')), "", "");
        const QByteArray rest(4094 - a.size(), 'y');
        const QString cut = skipped("line parse error", rest + "y\n");
        row("4095 bytes", results(a + rest + 'y'), "a,1,1", cut);
        row("4096 bytes", results(a + rest + "yz"), "a,1,1", cut);
        row("gone after the scan", Answers{{"SCAN", {FakeSupplicant::death, "OK\n"}}}, "",
            operation + "collecting scan results failed");
        row("gone before it", Answers{{"ATTACH", {FakeSupplicant::death, "OK\n"}}}, "",
            operation + "scan request failed");
    }
    void scan()
    {
        const auto [answers, networks, messages] = cells<Answers, QString, QString>();
        const FakeSupplicant daemon(answers);
        const auto [error, ctrl] = SystemHelper::wpaSupplicantConnect();
        QCOMPARE(text(error), QString());
        const MessageLog log;
        QCOMPARE(shown(SystemHelper::wpaNetworkScan(ctrl)), networks);
        QCOMPARE(complaints(), messages);
        QCOMPARE(text(SystemHelper::wpaSupplicantDisconnect(ctrl)), QString());
        QCOMPARE(clientSockets(), 0);
    }

    /// Events do not prolong the ten seconds, and no request gets the answer of another.
    void late()
    {
        const QByteArray event = "<2>CTRL-EVENT-SCAN-STARTED ";
        const char *pause = FakeSupplicant::pause;
        const FakeSupplicant daemon({{"SCAN", {event, pause, event, pause, event, pause, "OK\n"}},
                                     {"SCAN_RESULTS", {header + line("a", "-70"), "OK\n"}}});
        const auto [error, ctrl] = SystemHelper::wpaSupplicantConnect();
        const Pace tenfold(10);
        const MessageLog log;
        QCOMPARE(shown(SystemHelper::wpaNetworkScan(ctrl)), "");
        QCOMPARE(log.take(), QStringList("wpaNetworkScan : scan request failed"));
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(shown(SystemHelper::wpaNetworkScan(ctrl)), "a,1,1");
            QTest::qSleep(100); // what the daemon says unasked arrives
        }
        QCOMPARE(text(SystemHelper::wpaSupplicantDisconnect(ctrl)), QString());
    }

    /// A scan that was answered with another one's "OK" would ask for its results.
    void alwaysLate()
    {
        FakeSupplicant daemon({{"SCAN", {FakeSupplicant::slowness, "OK\n"}}});
        const auto [error, ctrl] = SystemHelper::wpaSupplicantConnect();
        const Pace tenfold(10);
        for (int i = 0; i < 4; ++i)
            QCOMPARE(shown(SystemHelper::wpaNetworkScan(ctrl)), "");
        QVERIFY(!daemon.stop().contains("SCAN_RESULTS"));
        QCOMPARE(text(SystemHelper::wpaSupplicantDisconnect(ctrl)), QString());
    }

    /// A daemon that is silent once is believed again after one more request.
    void lostCommand()
    {
        const FakeSupplicant daemon(
            {{"SIGNAL_POLL", {}}, {"SCAN_RESULTS", {header + line("a", "-70")}}});
        run("ip link set wlan0 up");
        QTRY_VERIFY(SystemHelper::ifaceIsConnected("wlan0"));
        const auto [error, ctrl] = SystemHelper::wpaSupplicantConnect();
        const Pace tenfold(10);
        QCOMPARE(SystemHelper::wpaNetworkStatus(ctrl), std::make_pair(0, true));
        QCOMPARE(shown(SystemHelper::wpaNetworkScan(ctrl)), "");
        QCOMPARE(shown(SystemHelper::wpaNetworkScan(ctrl)), "a,1,1");
        QCOMPARE(text(SystemHelper::wpaSupplicantDisconnect(ctrl)), QString());
    }

    void connectingAtOnce()
    {
        const FakeSupplicant daemon({});
        std::atomic<int> failures = 0;
        const auto connect = [&failures] {
            const auto [error, ctrl] = SystemHelper::wpaSupplicantConnect();
            failures += error.hasError() ? 1 : 0;
            static_cast<void>(SystemHelper::wpaSupplicantDisconnect(ctrl));
        };
        numberingIsWatched = true;
        std::thread other(connect);
        connect();
        other.join();
        numberingIsWatched = false;
        QCOMPARE(failures, 0);
        QVERIFY(!numberedAtOnce);
    }

    void status_data()
    {
        row("no link", QByteArray(), 0, "");
        row("level", QByteArray("RSSI=-55\nLINKSPEED=54\n"), 2, "");
        row("implausible", QByteArray("RSSI=0\n"), 4, "");
        row("the first one that has a value",
            QByteArray("X\nRSSI\nRSSI=\nrssi=-1\nAVG_RSSI=-2\n\nRSSI=-90=1\nRSSI=-50"), 0, "");
        row("empty", QByteArray(""), 0, "");
        row("gone", QByteArray(FakeSupplicant::death), 0,
            "\nwpaNetworkStatus : scan request failed");
    }
    void status()
    {
        const auto [answer, quality, message] = cells<QByteArray, int, QString>();
        const bool link = !answer.isNull();
        run(link ? "ip link set wlan0 up" : "ip link set wlan0 down");
        QTRY_COMPARE(SystemHelper::ifaceIsConnected("wlan0"), link);
        const bool gone = answer == FakeSupplicant::death;
        FakeSupplicant daemon(
            {{"SIGNAL_POLL", {answer}}, {gone ? "ATTACH" : "", {answer, "OK\n"}}});
        const auto [error, ctrl] = SystemHelper::wpaSupplicantConnect();
        QCOMPARE(text(error), QString());
        const MessageLog log;
        QCOMPARE(SystemHelper::wpaNetworkStatus(ctrl), std::make_pair(quality, link));
        QCOMPARE(complaints(), QString("ifaceIsConnected \"wlan0\" : ") +
                                   (link ? "carrier and up" : "no carrier") + message);
        QCOMPARE(text(SystemHelper::wpaSupplicantDisconnect(ctrl)), QString());
        if (!link)
            QCOMPARE(daemon.stop(), QByteArrayList({"ATTACH", "DETACH"}));
    }

    void refusedConnection()
    {
        const auto refusal = [] {
            const auto [error, ctrl] = SystemHelper::wpaSupplicantConnect();
            return ctrl == nullptr ? text(error) : "a handle";
        };
        const QString no = "libaux SystemHelper: cannot %1 wpa_supplicant control interface 10001";
        QCOMPARE(refusal(), no.arg("open"));
        const FakeSupplicant daemon({{"ATTACH", {"FAIL\n"}}});
        QCOMPARE(refusal(), no.arg("attach to"));
        QCOMPARE(clientSockets(), 0);
    }

    void nullHandle()
    {
        const MessageLog log;
        QVERIFY(SystemHelper::wpaNetworkScan(nullptr).isEmpty());
        QCOMPARE(SystemHelper::wpaNetworkStatus(nullptr), std::make_pair(0, false));
        QCOMPARE(text(SystemHelper::wpaSupplicantDisconnect(nullptr)), QString());
        QCOMPARE(log.take(), QStringList({"wpaNetworkScan : wpa control handle is NULL",
                                          "wpaNetworkStatus : wpa control handle is NULL",
                                          "wpaSupplicantDisconnect : wpa control handle is NULL"}));
    }
};

QTEST_GUILESS_MAIN(TestWifi)
#include "tst_wifi.moc"
