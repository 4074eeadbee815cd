// SPDX-License-Identifier: MIT
#include "examples.h"

#include <aux/systeminfo.h>
#include <aux/version.h>

#include <QJsonArray>
#include <QStorageInfo>

namespace examples
{

//! [identify]
// Once, at start-up. A terminal without an Ethernet address goes on without a serial number.
bool identify()
{
    aux::Error error = aux::SystemInfo::loadEthernetMac();
    if (!error.hasError())
        error = aux::SystemInfo::loadSerialNumber();
    if (error.hasError())
        qWarning() << error;
    return !error.hasError();
}
//! [identify]

//! [identity]
// What the terminal tells the server of itself; what it does not know is "".
QJsonObject identity()
{
    return {{"serial", aux::SystemInfo::getSerialNumber()},
            {"wlanMac", aux::SystemInfo::getWifiMac()},
            {"build", aux::SystemInfo::getBspId()},
            {"libaux", aux::SystemInfo::getVersion()},
            {"compiledWith", AUX_VERSION_TEXT}};
}
//! [identity]

//! [network]
// The addresses of the wired interface, for a status page.
QStringList wiredAddresses()
{
    QStringList addresses;
    const QJsonObject wired = aux::SystemInfo::getNetworkInfo("eth0").value("eth").toObject();
    const QJsonArray found = wired.value("ip").toArray();
    for (const QJsonValue address : found)
        addresses += address.toObject().value("ip").toString();
    return addresses;
}

QString address()
{
    const QString &found = aux::SystemInfo::getFirstActiveNetworkIPv4();
    return found.isEmpty() ? "not connected" : found;
}
//! [network]

//! [clock]
// The date as it stands in a report: the clock's, in UTC.
QString today()
{
    const QJsonObject now = aux::SystemInfo::getCurrentDateTimeUTCInfo();
    return QDate(now.value("year").toInt(), now.value("month").toInt(), now.value("day").toInt())
        .toString(Qt::ISODate);
}
//! [clock]

//! [touchscreen]
// Which user interface to start; takes up to two seconds.
QString interfaceToStart()
{
    return aux::SystemInfo::isTouchscreenDetected() ? "touch" : "buttons";
}
//! [touchscreen]

//! [setTime]
// Sets the clock to what a tachograph says. Whether it took shows only the clock.
bool setClock(qint64 secondsSince1970)
{
    const QDateTime time = QDateTime::fromSecsSinceEpoch(secondsSince1970);
    aux::SystemHelper::setSystemTime(time);
    return qAbs(time.secsTo(QDateTime::currentDateTimeUtc())) <= 2;
}
//! [setTime]

//! [remount]
// Protects a medium that was plugged in. Whether it is protected tells only the file system.
bool protect(const QString &mountPoint)
{
    aux::SystemHelper::remountReadOnly(mountPoint);
    return QStorageInfo(mountPoint).isReadOnly();
}
//! [remount]

//! [scan]
// The names of the networks in reach, the best first. A second call, some seconds later, knows what
// the scan of the first has found.
aux::Error networksInReach(QStringList &names)
{
    const auto [error, daemon] = aux::SystemHelper::wpaSupplicantConnect();
    if (error.hasError())
        return error;
    for (const aux::SystemHelper::WifiInfo &network : aux::SystemHelper::wpaNetworkScan(daemon)) {
        if (network.security == 2 && network.quality > 0)
            names += network.essid;
    }
    return aux::SystemHelper::wpaSupplicantDisconnect(daemon);
}
//! [scan]

//! [status]
// What the symbol of the wireless link shows, 0 to 3, or -1 for a link that is not there.
int bars(wpa_ctrl *daemon)
{
    const auto [quality, isConnected] = aux::SystemHelper::wpaNetworkStatus(daemon);
    if (!isConnected)
        return -1;
    return quality == 4 ? 0 : quality; // 4: the level cannot be
}
//! [status]

//! [start]
// A fresh daemon, whatever has become of the one before.
aux::Error restartWifi()
{
    if (aux::SystemHelper::wpaSupplicantForceKill()
            .hasError()) // none runs: its socket would be stale
        QFile::remove("/var/run/wpa_supplicant/wlan0");
    return aux::SystemHelper::wpaSupplicantStart();
}
//! [start]

//! [stop]
// Asks the daemon to end, and does not ask twice.
aux::Error stopWifi()
{
    aux::Error error = aux::SystemHelper::wpaSupplicantStop();
    return error.hasError() ? aux::SystemHelper::wpaSupplicantForceKill() : error;
}
//! [stop]

//! [link]
// The way to the server: the cable where there is one.
QString wayToServer()
{
    if (aux::SystemHelper::lanNetworkStatus())
        return "eth0";
    return aux::SystemHelper::ifaceIsConnected("wlan0") ? "wlan0" : QString();
}
//! [link]

} // namespace examples
