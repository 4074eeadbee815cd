// SPDX-License-Identifier: MIT
// The examples of the reference, in the terminal that they speak of.
#include "examples.h"
#include "support/datadirectories.h"
#include "support/fakesupplicant.h"
#include "support/openpgp.h"
#include "support/settings.h"
#include "support/world.h"

#include <sys/stat.h>

using namespace examples;
using othermachine::gpg;

namespace
{

const QString noError;
const QString trusted = QStringLiteral("/data/config/trusted.gpg");
const KeyPair server{"Server", othermachine::ed25519 + othermachine::cv25519, "open sesame"};

} // namespace

class TestExamples : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        clearDataDirectories();
        QVERIFY(makeLocations());
        prepareWork();
    }

    void errors()
    {
        const aux::Error error = send("absent.bin", {});
        const std::string all = "libaux FileHandler: source file does not exist 10002\n"
                                "  upload not handed over 7\n";
        QCOMPARE(print(error), all);
        QCOMPARE(printCause(error), all.substr(0, all.find('\n')));
        QVERIFY(!isWorthRepeating(error));
        QVERIFY(isWorthRepeating(aux::ErrorData("libaux", "no space", 10006)));
        QCOMPARE(
            explain(openModem("/data/none")),
            QStringList({"cannot be opened (modem 3)", "/data/none: No such file or directory"}));

        write(inNew + "a.bin", "a");
        QList<aux::Error> failures;
        const QMap<QString, QString> checksums{
            {"0.bin", ""}, {"a.bin", sha256("a")}, {"b.bin", ""}};
        QCOMPARE(print(sendAll(checksums, failures)).size(), 2 * all.size() + 8); // indented deeper
        QCOMPARE(failures.size(), 2);
        QCOMPARE(filesIn("/data/zel/rk4/transfer"), QStringList("a.bin"));
    }

    void settings()
    {
        aux::Configuration configuration;
        open(configuration);
        QVERIFY(writeDataPort(configuration, 8080));
        QCOMPARE(language(configuration), QString("en_GB"));
        QCOMPARE(state(configuration), QString("version , 0 commits, no pass phrase"));
        QVERIFY(!tryNetwork(configuration, "Depot", [] { return false; }));
        QVERIFY(tryNetwork(configuration, "Guests", [] { return true; }));
        QCOMPARE(state(configuration), QString("version , 1 commits, no pass phrase"));
        QCOMPARE(label(aux::SettingsCode::DeviceLang, aux::SettingsArea::All),
                 QString("Terminal: Language"));

        configuration.setValue(aux::SettingsCode::CryptoVendors, "0x1234:ABCD");
        QVERIFY(isCryptoDevice(configuration, "1234:abcd"));

        QCOMPARE(text(startOver(configuration, "backup")), noError);
        const QString file = configuration.getFileName();
        QCOMPARE(valueIn(file, "network/wifi/ssid"), QJsonValue(QJsonValue::Undefined));
        QCOMPARE(refusalOf("backup"), noError);
        QVERIFY(takeIntoUse(configuration, "backup"));
        QCOMPARE(valueIn(file, "network/wifi/ssid"), QJsonValue("Guests"));

        write("faulty", read("backup").replace("8080", "9000").replace("\"en_GB\"", "1"));
        QCOMPARE(refusalOf("faulty"), QString("Cannot use internal CGI port as dataport: 9000"));
        QCOMPARE(faultsOf("faulty"),
                 QStringList({"Wrong type of /device/lang, expected a text", refusalOf("faulty")}));
        QVERIFY(!takeIntoUse(configuration, "faulty"));

        ::chmod("/data/config/organisation", 0);
        QVERIFY(!writeDataPort(configuration, 8081));
        ::chmod("/data/config/organisation", 0700);
        afterTheStorageWasFull(configuration);
        QCOMPARE(valueIn(file, "network/dataport"), QJsonValue(8081));
    }

    void files()
    {
        QCOMPARE(lamp(), QString("off"));
        write("card.ddd", "driver card");
        QCOMPARE(text(keep("card.ddd")), noError);
        QCOMPARE(filesIn(inArchive).size(), 1);
        QCOMPARE(text(keep("absent")),
                 failure("packFileToBinContainer", "Failed to open file for reading"));

        const QString path = pathIn("new", "rk4-a.bin");
        write(path, "a");
        write(pathIn("new", "notes"), "b");
        QCOMPARE(lamp(), QString("on"));
        QStringList containers;
        QCOMPARE(text(waiting(containers)), noError);
        QCOMPARE(containers, QStringList("rk4-a.bin"));
        QVERIFY(isUnchanged(path, sha256("a").toUpper()));
        QCOMPARE(locationNameOf(path) + pathIn("nowhere", "a"), QString("new"));
        QCOMPARE(label(aux::DirLocation::New) + label(aux::DirLocation::Log), QString("To dolog"));
        QVERIFY(hasRoomFor(1) && !hasRoomFor(1LL << 60));

        write("gpg_public.zelgpg", "key");
        write("background.img", "picture");
        QVERIFY(copyCompanions("candidate.json", "/data/config/candidate.json"));
        QCOMPARE(background("/data/config/a"), QUrl("file:///data/config/background.img"));

        QCOMPARE(text(resetTerminal()), noError);
        QVERIFY(!QFile::exists(path) && QFile::exists(inNew));
        QDir(inNew).removeRecursively();
        QCOMPARE(lamp(), QString("blinks"));
    }

    void containers()
    {
        write("messages", "log");
        QCOMPARE(text(exportLog("messages", "container")), noError);
        QDir().mkdir("work");
        QCOMPARE(takeUpdate("container", "work").getMsg(),
                 QString("container holds something else"));
        QCOMPARE(filesIn("work"), QStringList());
        write("container", read("container").replace("LOGF", "UPDF"));
        QCOMPARE(text(takeUpdate("container", "work")), noError);
        QCOMPARE(read("work/update"), QByteArray("log"));
        QCOMPARE(label(DataHelper::ZEL_FILE_TYPE::LOGF), QString("Log"));

        QStringList devices;
        QCOMPARE(text(checkVendors("1234:", devices)), noError);
        QCOMPARE(checkVendors("1234", devices).getMsg(), QString("USB VID:PID list syntax error"));
        QCOMPARE(devices, QStringList("1234:"));
    }

    void codes()
    {
        QCOMPARE(issuedBy("\x0d"), QString("D"));
        QCOMPARE(sumOf("1234", "56789"), 0xCBF43926U);
        QVERIFY(isOwnInverse("data", "key"));
        write("in", "content");
        QCOMPARE(text(toText("in", "text")), noError);
        QCOMPARE(text(convert("in", "in.b64")), noError);
        QCOMPARE(read("in.b64"), read("text"));
        QCOMPARE(text(fromText("text", "back")), noError);
        QCOMPARE(read("back"), QByteArray("content"));
    }

    void keysAndMessages()
    {
        othermachine::makeKey(server);
        aux::Configuration configuration;
        open(configuration);
        configuration.setValue(aux::SettingsCode::CryptoPassphrase, "hidden");
        QCOMPARE(text(hideKey(configuration, exported(server, "--armor"), "hidden")), noError);
        QVERIFY(isPassPhrase(configuration, "hidden") && !isPassPhrase(configuration, "seen"));
        QCOMPARE(text(importKey(configuration)), noError);

        write("message", encrypted("order", server));
        QCOMPARE(text(examples::read("message", "file", server.passPhrase)), noError);
        QCOMPARE(::read("file"), QByteArray("order"));

        write(trusted, gpg({"--export", server.name}));
        QCOMPARE(readOrder("message", "unsigned", server.passPhrase).getMsg(),
                 QString("decryptFileGPG: message is not signed"));
        write("message", gpg({"--passphrase", server.passPhrase, "--recipient", server.name,
                              "--sign", "--encrypt"},
                             "order"));
        QCOMPARE(text(readOrder("message", "signed", server.passPhrase)), noError);

        QCOMPARE(text(sign("file", server.passPhrase)), noError);
        QCOMPARE(text(checkUpdate("file", {})), noError);
        QCOMPARE(checkUpdate("file", QDateTime::currentDateTimeUtc().addDays(1)).getId(), 3U);

        write("key", gpg({"--export", server.name}));
        QCOMPARE(text(encryptForServer("key", "file", "out")), noError);
        QCOMPARE(othermachine::decrypted(::read("out"), server), QByteArray("order"));
        checkNothingIsLeft();
    }

    void system()
    {
        run("ip link add peer0 type veth peer name eth0; ip addr add 192.0.2.7/24 dev eth0;"
            "ip link set eth0 up; ip link set peer0 up;"
            "mount -t ramfs medium /data/zel/rk4/failed");
        QTRY_COMPARE(wayToServer(), QString("eth0"));
        QCOMPARE(address(), QString("192.0.2.7"));
        QVERIFY(wiredAddresses().contains("192.0.2.7"));
        QVERIFY(identify());
        QCOMPARE(identity().value("serial").toString().size(), 12);
        QCOMPARE(identity().value("libaux"), identity().value("compiledWith"));
        const QString before = QDateTime::currentDateTimeUtc().date().toString(Qt::ISODate);
        QVERIFY(QDate::fromString(today(), Qt::ISODate).isValid() && before <= today());
        fakeProgram("udevadm", "echo E: ID_INPUT_TOUCHSCREEN=1");
        QCOMPARE(interfaceToStart(), QString("touch"));
        QVERIFY(!setClock(QDateTime::currentSecsSinceEpoch() + 3600)); // refused here
        QVERIFY(protect("/data/zel/rk4/failed"));
        run("umount /data/zel/rk4/failed");
    }

    void wifi()
    {
        run("ip link add wlan0 type veth peer name peer1; ip link set wlan0 up; ip link set peer1 up");
        QTRY_VERIFY(aux::SystemHelper::ifaceIsConnected("wlan0"));
        QStringList names;
        QVERIFY(networksInReach(names).hasError());

        const FakeSupplicant daemon({{"SCAN_RESULTS",
                                      {"bssid / frequency / signal level / flags / ssid\n"
                                       "a\t2412\t-70\t[WPA2-PSK-CCMP]\tDepot\n"
                                       "b\t2412\t-40\t[WPA2-PSK-CCMP]\tYard\n"
                                       "c\t2412\t-40\t[ESS]\tGuests\n"}},
                                     {"SIGNAL_POLL", {"RSSI=-60\n"}}});
        QCOMPARE(text(networksInReach(names)), noError);
        QCOMPARE(names, QStringList({"Yard", "Depot"}));
        const auto [error, connection] = aux::SystemHelper::wpaSupplicantConnect();
        QCOMPARE(text(error), noError);
        QCOMPARE(bars(connection), 2);
        QCOMPARE(text(aux::SystemHelper::wpaSupplicantDisconnect(connection)), noError);

        // There is no radio, but the socket no longer is in the way.
        QCOMPARE(restartWifi().getMsg(), QString("SystemHelper: cannot start wpa_supplicant"));
        QCOMPARE(stopWifi().getMsg(), QString("SystemHelper: wpa_supplicant not killed"));
    }
};

QTEST_GUILESS_MAIN(TestExamples)
#include "tst_examples.moc"
