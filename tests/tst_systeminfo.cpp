// SPDX-License-Identifier: MIT
#include <aux/systeminfo.h>
#include <aux/version.h>

#include "support/observe.h"
#include "support/rows.h"
#include "support/waiting.h"
#include "support/world.h"
#include "system/identity.h"

#include <QJsonDocument>
#include <QTimeZone>

#include <atomic>
#include <cstdarg>
#include <cstring>
#include <thread>

#include <linux/wireless.h>
#include <sys/syscall.h>
#include <unistd.h>

using aux::Interface;
using aux::InterfaceList;
using aux::SystemInfo;

/// Qt's: what answers this request is a Wi-Fi interface.
extern "C" int ioctl(int file, unsigned long request, ...) noexcept
{
    va_list arguments;
    va_start(arguments, request);
    auto *argument = va_arg(arguments, iwreq *);
    va_end(arguments);
    if (request == SIOCGIWMODE && std::strcmp(argument->ifr_ifrn.ifrn_name, "wlan0") == 0)
        return 0;
    return static_cast<int>(syscall(SYS_ioctl, file, request, argument));
}

namespace
{

InterfaceList present;

Interface interface(QNetworkInterface::InterfaceType type, QNetworkInterface::InterfaceFlags flags,
                    const char *name, std::initializer_list<const char *> addresses)
{
    Interface made{type, flags, name, {}, {}};
    for (const char *address : addresses)
        made.addresses += QHostAddress(address);
    return made;
}

/// With single quotes, which read better in a literal.
QByteArray compact(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact).replace('"', '\'');
}

int processes()
{
    return QDir("/proc").entryList({"[0-9]*"}).size();
}

} // namespace

Q_DECLARE_METATYPE(InterfaceList)

class TestSystemInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void identity_data()
    {
        const QString length = "getWifiMac : eth mac address incorrect length";
        const QString range = "getWifiMac : eth mac address bytes not in range";
        row("usual", "00:11:22:33:44:AB", "", "0011223344AB", "00:11:22:34:44:AB", "");
        row("largest", "00:11:22:FE:44:AB", "", "001122FE44AB", "00:11:22:FF:44:AB", "");
        row("too large", "00:11:22:FF:44:AB", "", "001122FF44AB", "", range);
        row("one digit", "00:11:22:09:44:AB", "", "0011220944AB", "00:11:22:A4:4A:B", "");
        row("negative", "00:11:22:-1:44:AB", "", "001122-144AB", "", range);
        row("no digits", "00:11:22:3G:44:AB", "", "0011223G44AB", "",
            "getWifiMac : eth mac address bytes inconvertible");
        row("short", "AB:CD:E", "", "ABCDE", "", length);
        row("four digits", "AB:CD", "libaux SystemInfo: invalid serial number format 10001",
            "000000000000", "", length);
        row("none", "", "libaux SystemInfo: cannot find ethernet hardware address 10001", "", "",
            "getWifiMac : empty eth mac address");
    }
    void identity()
    {
        const auto [mac, error, serial, wifi, message] =
            cells<QString, QString, QString, QString, QString>();
        present = {{QNetworkInterface::Wifi, {}, {}, "wifi", {}},
                   {QNetworkInterface::Ethernet, QNetworkInterface::IsLoopBack, {}, "lo", {}},
                   {QNetworkInterface::Ethernet, {}, {}, mac, {}},
                   {QNetworkInterface::Ethernet, {}, {}, "second", {}}};
        aux::Identity identity([] { return present; });
        QCOMPARE(text(identity.loadSerialNumber()), error);
        if (!serial.isEmpty()) {
            present.clear();
            QCOMPARE(text(identity.loadSerialNumber()), QString()); // loaded is loaded
        }
        QCOMPARE(identity.serialNumber(), serial);
        const MessageLog log;
        QCOMPARE(identity.wifiAddress(), wifi);
        QCOMPARE(log.take().join('\n'), message);
    }

    void network_data()
    {
        const auto ethernet = QNetworkInterface::Ethernet;
        const auto wifi = QNetworkInterface::Wifi;
        const auto up = QNetworkInterface::IsUp;
        const auto loopBack = up | QNetworkInterface::IsLoopBack;
        const Interface eth1 = interface(ethernet, up, "eth1", {"fe80::1", "192.0.2.1"});
        const Interface wlan5 = interface(wifi, up, "wlan5", {"192.0.2.2", "192.0.2.3"});
        row("loop-backs, and a type that does not count",
            InterfaceList{interface(QNetworkInterface::Loopback, loopBack, "lo", {"127.0.0.1"}),
                          interface(ethernet, loopBack, "eth0", {"192.0.2.1"}),
                          interface(wifi, loopBack, "wlan0", {"192.0.2.1"}),
                          interface(QNetworkInterface::Virtual, up, "tun", {"192.0.2.1"})},
            "eth0", "none,,,");
        row("the fixed name", InterfaceList{eth1, wlan5}, "eth0", "eth,eth1,wlan5,192.0.2.2");
        row("not its own", InterfaceList{wlan5, eth1}, "eth1", "none,eth1,wlan5,192.0.2.1");
        row("Wi-Fi", InterfaceList{eth1, wlan5}, "wlan0", "wlan,eth1,wlan5,192.0.2.2");
        row("no Wi-Fi", InterfaceList{eth1}, "wlan0", "none,eth1,,192.0.2.1");
        row("only the first one, though down",
            InterfaceList{interface(ethernet, {}, "eth0", {"192.0.2.4"}), eth1,
                          interface(ethernet, up, "eth2", {"fe80::2"})},
            "eth0", "none,eth0,,192.0.2.1");
        row("no address", InterfaceList{interface(wifi, up, "w", {})}, "wlan0", "wlan,,w,");
    }
    /// Told are what is active, the names of the two, and the IPv4 address.
    void network()
    {
        const auto [interfaces, inUse, expected] = cells<InterfaceList, QString, QString>();
        const QJsonObject info = aux::networkInfo(interfaces, inUse);
        QCOMPARE(info.keys(), QStringList({"active", "eth", "wlan"}));
        const auto name = [&info](const char *kind) {
            return info[QLatin1String(kind)].toObject()["interface"].toString();
        };
        const QStringList told = {info["active"].toString(), name("eth"), name("wlan"),
                                  aux::activeIPv4(interfaces)};
        QCOMPARE(told.join(','), expected);
    }

    /// Real interfaces, through the operations that ask the system.
    void terminal()
    {
        const MessageLog log;
        QCOMPARE(SystemInfo::getSerialNumber(), QString());
        QCOMPARE(text(SystemInfo::loadSerialNumber()),
                 QStringLiteral("libaux SystemInfo: cannot find ethernet hardware address 10001"));
        run("ip link add eth0 index 10 address 02:00:00:0e:44:ab type veth "
            "peer name wlan0 index 11 address 02:00:00:00:00:02;"
            "ip link add eth2 index 12 type veth peer name eth3 index 13;"
            "ip link set eth0 addrgenmode none; ip link set wlan0 addrgenmode none;"
            "ip address add 192.0.2.1/24 dev eth0; ip address add fe80::1/64 dev eth0 nodad;"
            "ip address add 192.0.2.2/24 dev wlan0");
        QCOMPARE(text(SystemInfo::loadEthernetMac()), QString());
        QCOMPARE(SystemInfo::getWifiMac(), QString());
        QCOMPARE(log.take(), QStringList("getWifiMac : eth mac address incorrect length"));
        QCOMPARE(text(SystemInfo::loadSerialNumber()), QString());
        QCOMPARE(SystemInfo::getSerialNumber(), QStringLiteral("0200000E44AB"));
        QCOMPARE(SystemInfo::getWifiMac(), QStringLiteral("02:00:00:F4:4A:B"));

        QCOMPARE(SystemInfo::getFirstActiveNetworkIPv4(), QString());
        QCOMPARE(SystemInfo::getNetworkInfo("eth0")["active"].toString(), QStringLiteral("none"));
        run("ip link set eth0 up; ip link set wlan0 up");
        QTRY_COMPARE(SystemInfo::getNetworkInfo("eth0")["active"].toString(), // the link watch
                     QStringLiteral("eth"));
        QTRY_COMPARE(SystemInfo::getFirstActiveNetworkIPv4(), QStringLiteral("192.0.2.2"));
        QCOMPARE(compact(SystemInfo::getNetworkInfo("wlan0")),
                 QByteArray("{'active':'wlan','eth':{'interface':'eth0','ip':[{'ip':'192.0.2.1',"
                            "'type':'ip4'},{'ip':'fe80::1%eth0','type':'ip6'}],"
                            "'mac':'02:00:00:0E:44:AB'},'wlan':{'interface':'wlan0','ip':[{"
                            "'ip':'192.0.2.2','type':'ip4'}],'mac':'02:00:00:00:00:02'}}"));
        QCOMPARE(log.take(), QStringList());
        QCOMPARE(SystemInfo::getVersion(), AUX_VERSION_TEXT);
        QCOMPARE(AUX_VERSION_TEXT, qPrintable(QStringLiteral("%1.%2.%3.%4")
                                                  .arg(AUX_VERSION_MAJOR)
                                                  .arg(AUX_VERSION_MINOR)
                                                  .arg(AUX_VERSION_PATCH)
                                                  .arg(AUX_VERSION_BUILD)));
    }

    void buildId_data()
    {
        const QByteArray longest(19, 'x');
        row("missing", QByteArray(), "", "getBspId : build id file does not exist");
        row("white space around", QByteArray(" \tid 1.2 \n"), "id 1.2", "");
        row("19 bytes", longest, QString(longest), "");
        row("20 bytes", longest + '\n', "", "getBspId : build id file exceeds size limit");
        row("closed", QByteArray("closed"), "", "getBspId : cannot open build id file");
    }
    void buildId()
    {
        const auto [content, id, message] = cells<QByteArray, QString, QString>();
        const QString file = QStringLiteral("/etc/build_id");
        QFile::remove(file);
        if (!content.isNull())
            write(file, content);
        if (content == "closed")
            QFile::setPermissions(file, {});
        const MessageLog log;
        QCOMPARE(SystemInfo::getBspId(), id);
        QCOMPARE(log.take().join('\n'), message);
    }

    void severalThreads()
    {
        replace("/etc/build_id", "id 1.2");
        std::atomic<int> failures = 0;
        const auto ask = [&failures] {
            for (int i = 0; i < 500; ++i) {
                const QString &id = SystemInfo::getBspId();
                const QString &address = SystemInfo::getFirstActiveNetworkIPv4();
                ::sched_yield();
                failures += id == "id 1.2" && address == "192.0.2.2" ? 0 : 1;
            }
        };
        std::thread first(ask);
        std::thread second(ask);
        ask();
        first.join();
        second.join();
        QCOMPARE(failures, 0);
    }

    void dateAndTime()
    {
        const auto now = [] { return QDateTime::currentDateTimeUtc().toSecsSinceEpoch(); };
        const qint64 before = now();
        const QJsonObject info = SystemInfo::getCurrentDateTimeUTCInfo();
        const auto field = [&info](const char *key) { return info[QLatin1String(key)].toInt(-1); };
        const QDateTime told({field("year"), field("month"), field("day")},
                             {field("hour"), field("minute"), field("second")}, QTimeZone::utc());
        QVERIFY(before <= told.toSecsSinceEpoch() && told.toSecsSinceEpoch() <= now());
        QCOMPARE(info.size(), 6);
    }

    void touchscreen_data()
    {
        const QByteArray marker = "echo 'E: ID_INPUT_TOUCHSCREEN=1'\n";
        const QString no = "isTouchscreenDetected : touch screen not detected";
        const QString failed = "isTouchscreenDetected : touch screen ident process failed";
        row("listed, at the end of much", "seq 200000\n" + marker, "");
        row("value 0", QByteArray("echo 'E: ID_INPUT_TOUCHSCREEN=0'\n"), no);
        row("failing", marker + "exit 1", failed);
        row("killed", marker + "kill -9 $$", failed);
        row("missing", QByteArray(), failed);
        // Deliberately a time-out is no failure. The sleep is a child of the program.
        row("listed too late", "sleep 8\n" + marker, no);
        row("hanging, but listed", marker + "sleep 1000; true", "");
    }
    void touchscreen()
    {
        const auto [program, message] = cells<QByteArray, QString>();
        const QByteArray path = qgetenv("PATH");
        const auto restore = qScopeGuard([&path] { qputenv("PATH", path); });
        fakeProgram("udevadm", "[ \"$*\" = 'info --export-db' ] || exit 64\n" + program);
        if (program.isEmpty())
            qputenv("PATH", "/nowhere");
        const int before = processes();
        const MessageLog log;
        waiting.longest = 0;
        QCOMPARE(SystemInfo::isTouchscreenDetected(), message.isEmpty());
        QVERIFY(waiting.longest <= 2000);
        QCOMPARE(log.take().join('\n'), message);
        QTRY_COMPARE_WITH_TIMEOUT(processes(), before, 1000);
    }
};

QTEST_GUILESS_MAIN(TestSystemInfo)
#include "tst_systeminfo.moc"
