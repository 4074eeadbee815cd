// SPDX-License-Identifier: MIT
#include <aux/systemhelper.h>

#include "support/fakesupplicant.h"
#include "support/observe.h"
#include "support/rows.h"
#include "support/world.h"
#include "system/scantable.h"

#include <atomic>
#include <climits>
#include <ctime>

#include <dlfcn.h>
#include <poll.h>

using aux::SystemHelper;
using Answers = FakeSupplicant::Answers;

namespace
{

/// The library's seconds in one of ours, and since when, in milliseconds: its clock never jumps.
std::atomic<int> pace = 1;
std::atomic<qint64> paceSince = 0;

std::atomic<bool> numberingIsWatched = false;
std::atomic<int> numbering = 0;
std::atomic<bool> numberedAtOnce = false;

/// The system's own function, where a 32-bit machine has two of them the one for this size of time.
template <typename Function>
Function *original(const char *name, const char *for64Bits)
{
    const bool isOther = sizeof(time_t) > sizeof(long);
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, isOther ? for64Bits : name));
}

} // namespace

extern "C" int clock_gettime(clockid_t clock_id, timespec *tp) noexcept
{
    static const auto real =
        original<decltype(clock_gettime)>("clock_gettime", "__clock_gettime64");
    const int result = real(clock_id, tp);
    if (pace > 1 && clock_id == CLOCK_MONOTONIC) {
        const qint64 now = tp->tv_sec * 1000LL + tp->tv_nsec / 1000000;
        const qint64 ms = paceSince + (now - paceSince) * pace;
        *tp = {static_cast<time_t>(ms / 1000), static_cast<long>(ms % 1000 * 1000000)};
    }
    return result;
}

extern "C" int poll(pollfd *fds, nfds_t nfds, int timeout)
{
    static const auto real = original<decltype(poll)>("poll", "poll");
    return real(fds, nfds, timeout < 0 ? timeout : timeout / pace);
}

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

QStringList graded(std::initializer_list<int> levels)
{
    QStringList messages;
    for (const int level : levels)
        messages += QStringLiteral("wpaInfoLevelToQuality : level:  %1").arg(level);
    return messages;
}

/// The message that this line is left out.
QStringList skipped(const char *reason, QByteArray line)
{
    line.chop(1);
    return {QStringLiteral("wpaInfoFromScanResultString : %1, skipping:  \"%2\"")
                .arg(reason, QString::fromLatin1(line.replace('\t', "\\t")))};
}

QStringList shown(const QVector<SystemHelper::WifiInfo> &networks)
{
    QStringList list;
    for (const auto &network : networks)
        list += QStringLiteral("%1,%2,%3")
                    .arg(network.essid)
                    .arg(network.quality)
                    .arg(network.security);
    return list;
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
            QCOMPARE(log.take(), graded({level}));
        }
    }

    void table_data()
    {
        columns<QByteArray, QStringList, QStringList>("lines", "networks", "messages");
        const QStringList none;
        row("nothing but the header", QByteArray("\n\n"), none, none);
        row("best first, each name once",
            line("a", "-70") + line("b", "-55") + line("a", "-45", "") + line("A", "-90") + "\n",
            QStringList{"a,3,0", "b,2,1", "A,0,1"}, graded({-70, -55, -45, -90}));
        row("security, and the weakest",
            line("a", "-120", "[WPA2-PSK-CCMP][ESS]") + line("b", "-120", "[wpa2-psk]") +
                line("c", "-120", ""),
            QStringList{"a,0,2", "b,0,1", "c,0,0"}, graded({-120, -120, -120}));
        row("blanks, escapes and bytes in a name",
            line(" x ", "-60") + line(R"(\x00\\)", "-60") + line("\xe4", "-60"),
            QStringList{" x ,2,1", R"(\x00\\,2,1)", QString::fromLatin1("\xe4,2,1")},
            graded({-60, -60, -60}));
        const auto left = [&none](const char *reason, const QByteArray &line,
                                  const QStringList &before = {}) {
            row(line.constData(), line, none, before + skipped(reason, line));
        };
        left("line parse error", "bssid\t2412\t-50\t[ESS]\n");
        left("line parse error", line("x\t", "-50"));
        left("empty ESSID", line("", "0"), graded({0}));
        left("ESSID contains all-whitespace", line(" ", "0"), graded({0}));
        for (const auto &[text, level] :
             {std::pair("-121", -121), {"0", 0}, {"-5x", 0}, {"-9e9", 0}})
            left("ESSID has implausible signal level", line("x", text), graded({level}));
    }
    void table()
    {
        QFETCH(QByteArray, lines);
        const MessageLog log;
        QTEST(shown(aux::networksFromScanTable(QString::fromLatin1(header + lines))), "networks");
        QTEST(log.take(), "messages");
    }

    void scan_data()
    {
        columns<Answers, QStringList, QStringList>("answers", "networks", "messages");
        const QByteArray event = "<3>CTRL-EVENT-SCAN-RESULTS ";
        const QByteArray a = header + line("a", "-70");
        const QStringList found("a,1,1");
        const QStringList none;
        const auto says = [](const char *text) {
            return QStringList(QString("wpaNetworkScan : ") + text);
        };
        const auto results = [](const QByteArray &answer) {
            return Answers{{"SCAN_RESULTS", {answer}}};
        };
        row("a scan that fails does not matter",
            Answers{{"SCAN", {"FAIL-BUSY\n"}}, {"SCAN_RESULTS", {a}}}, found, graded({-70}));
        row("events between the answers",
            Answers{{"SCAN", {event, "OK\n"}}, {"SCAN_RESULTS", {event, event, a}}}, found,
            graded({-70}));
        row("up to the first zero byte", results(a + '\0' + a), found, graded({-70}));
        row("zero byte first", results(QByteArray("\0a", 2)), none, says("empty scan result"));
        row("no byte at all", results(""), none, says("empty scan result"));
        row("no table", results("UNKNOWN COMMAND\n"), none, none);
        row("no end", results(QByteArray(10000, 'x')), none, none);
        const QByteArray rest(4094 - a.size(), 'y');
        const QStringList cut = graded({-70}) + skipped("line parse error", rest + "y\n");
        row("4095 bytes", results(a + rest + 'y'), found, cut);
        row("4096 bytes", results(a + rest + "yz"), found, cut);
        row("gone after the scan", Answers{{"SCAN", {FakeSupplicant::death, "OK\n"}}}, none,
            says("collecting scan results failed"));
        row("gone before it", Answers{{"ATTACH", {FakeSupplicant::death, "OK\n"}}}, none,
            says("scan request failed"));
    }
    void scan()
    {
        QFETCH(Answers, answers);
        const FakeSupplicant daemon(answers);
        const auto [error, ctrl] = SystemHelper::wpaSupplicantConnect();
        QCOMPARE(text(error), QString());
        const MessageLog log;
        QTEST(shown(SystemHelper::wpaNetworkScan(ctrl)), "networks");
        QTEST(log.take(), "messages");
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
        timespec now{};
        ::clock_gettime(CLOCK_MONOTONIC, &now);
        paceSince = now.tv_sec * 1000LL + now.tv_nsec / 1000000;
        pace = 10;
        const MessageLog log;
        QCOMPARE(shown(SystemHelper::wpaNetworkScan(ctrl)), QStringList());
        QCOMPARE(log.take(), QStringList("wpaNetworkScan : scan request failed"));
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(shown(SystemHelper::wpaNetworkScan(ctrl)), QStringList("a,1,1"));
            QTest::qSleep(100); // what the daemon says unasked arrives
        }
        pace = 1;
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
        columns<QByteArray, int, QStringList>("answer", "quality", "messages");
        row("no link", QByteArray(), 0, QStringList());
        row("level", QByteArray("RSSI=-55\nLINKSPEED=54\n"), 2, graded({-55}));
        row("implausible", QByteArray("RSSI=0\n"), 4, graded({0}));
        row("no number", QByteArray("RSSI=x\n"), 4, graded({0}));
        row("the first one that has a value",
            QByteArray("X\nRSSI\nRSSI=\nrssi=-1\nAVG_RSSI=-2\n\nRSSI=-90=1\nRSSI=-50"), 0,
            graded({-90}));
        row("none", QByteArray("LINKSPEED=54\n"), 0, QStringList());
        row("empty", QByteArray(""), 0, QStringList());
        row("gone", QByteArray(FakeSupplicant::death), 0,
            QStringList("wpaNetworkStatus : scan request failed"));
    }
    void status()
    {
        QFETCH(QByteArray, answer);
        QFETCH(QStringList, messages);
        const bool link = !answer.isNull();
        run(link ? "ip link set wlan0 up" : "ip link set wlan0 down");
        QTRY_COMPARE(SystemHelper::ifaceIsConnected("wlan0"), link);
        const bool gone = answer == FakeSupplicant::death;
        FakeSupplicant daemon(
            {{"SIGNAL_POLL", {answer}}, {gone ? "ATTACH" : "", {answer, "OK\n"}}});
        const auto [error, ctrl] = SystemHelper::wpaSupplicantConnect();
        QCOMPARE(text(error), QString());
        const MessageLog log;
        QTEST(SystemHelper::wpaNetworkStatus(ctrl).first, "quality");
        messages.prepend(link ? "ifaceIsConnected \"wlan0\" : carrier and up"
                              : "ifaceIsConnected \"wlan0\" : no carrier");
        QCOMPARE(log.take(), messages);
        QCOMPARE(SystemHelper::wpaNetworkStatus(ctrl).second, link);
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
