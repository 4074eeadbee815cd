// SPDX-License-Identifier: MIT
#include "config/catalogue.h"

#include <algorithm>

namespace aux
{

namespace
{

using Code = SettingsCode;
using Area = SettingsArea;
using Kind = Rule::Kind;

QVariant text(const char *value)
{
    return QString::fromUtf8(value);
}

constexpr bool plain = false;
constexpr bool flagged = true;
constexpr bool shown = false;
constexpr bool secret = true;

const QVariant empty = text("");
const QVariant noAddress = text("000.000.000.000");

// Its key path is also its default value, as odd as that looks.
constexpr const char *usbkeyclear = "/datahandling/usbkeyclear";

constexpr Rule free{};
constexpr Rule someMode{Kind::OneOn, 0,
                        "All operating modes disabled. At least one mode must be enabled."};
constexpr Rule pinHash{Kind::Length, 64, "Invalid pin hash length: "};
// Where the terminal serves its own pages.
constexpr Rule notCgiPort{Kind::NotValue, 9000, "Cannot use internal CGI port as dataport: "};
constexpr Rule protectedKey{Kind::MinimumLength, 64, "Invalid config file. GPG Key invalid size"};
constexpr Rule idList{Kind::IdList};

// In the order of the codes.
// clang-format off
const QVector<Setting> catalogue{
    {Code::DeviceModeUsb,                          "/device/mode/usb",                          true,                  Area::Mode,        plain,   shown,  someMode},
    {Code::DeviceModeSerial,                       "/device/mode/serial",                       true,                  Area::Mode,        plain,   shown,  someMode},
    {Code::DeviceModeNetwork,                      "/device/mode/network",                      true,                  Area::Mode,        plain,   shown,  someMode},
    {Code::DevicePin,                              "/device/pin",                               empty,                 Area::All,         flagged, secret, pinHash},
    {Code::DeviceLang,                             "/device/lang",                              text("en_GB"),         Area::All,         plain,   shown,  free},
    {Code::DeviceTimeManual,                       "/device/time/manual",                       true,                  Area::Time,        plain,   shown,  free},
    {Code::DeviceTimeTimezone,                     "/device/time/timezone",                     text("Europe/Berlin"), Area::All,         plain,   shown,  free},
    {Code::DeviceTimeNtpserver,                    "/device/time/ntpserver",                    empty,                 Area::Time,        plain,   shown,  free},
    {Code::DeviceTimeNtpport,                      "/device/time/ntpport",                      0U,                    Area::Time,        plain,   shown,  free},
    {Code::DeviceAudio,                            "/device/audio",                             true,                  Area::All,         plain,   shown,  free},
    {Code::DeviceScreensaverEnabled,               "/device/screensaver/enabled",               true,                  Area::Screensaver, plain,   shown,  free},
    {Code::DeviceScreensaverTimeout,               "/device/screensaver/timeout",               40U,                   Area::Screensaver, plain,   shown,  free},
    {Code::DeviceDownloadreminderDrivercard,       "/device/downloadreminder/drivercard",       28U,                   Area::All,         flagged, shown,  free},
    {Code::DeviceDownloadreminderDownloadkey,      "/device/downloadreminder/downloadkey",      90U,                   Area::All,         flagged, shown,  free},
    {Code::DeviceInfotext,                         "/device/infotext",                          empty,                 Area::All,         flagged, shown,  free},
    {Code::DeviceRfid,                             "/device/rfid",                              true,                  Area::All,         flagged, shown,  free},
    {Code::DeviceRecordertype,                     "/device/recordertype",                      text("default"),       Area::All,         flagged, shown,  free},
    {Code::NetworkMode,                            "/network/mode",                             text("LAN"),           Area::Network,     plain,   shown,  free},
    {Code::NetworkManual,                          "/network/manual",                           false,                 Area::Network,     plain,   shown,  free},
    {Code::NetworkIp,                              "/network/ip",                               noAddress,             Area::Network,     plain,   shown,  free},
    {Code::NetworkBroadcast,                       "/network/broadcast",                        noAddress,             Area::Network,     plain,   shown,  free},
    {Code::NetworkNetmask,                         "/network/netmask",                          noAddress,             Area::Network,     plain,   shown,  free},
    {Code::NetworkGateway,                         "/network/gateway",                          noAddress,             Area::Network,     plain,   shown,  free},
    {Code::NetworkNameserver,                      "/network/nameserver",                       empty,                 Area::Network,     plain,   shown,  free},
    {Code::NetworkDataport,                        "/network/dataport",                         8000U,                 Area::Network,     plain,   shown,  notCgiPort},
    {Code::NetworkWifiSsid,                        "/network/wifi/ssid",                        empty,                 Area::Network,     plain,   shown,  free},
    {Code::NetworkWifiPsk,                         "/network/wifi/psk",                         empty,                 Area::Network,     plain,   secret, free},
    {Code::PublicserverUrl,                        "/publicserver/url",                         empty,                 Area::All,         flagged, shown,  free},
    {Code::PublicserverUser,                       "/publicserver/user",                        empty,                 Area::All,         flagged, shown,  free},
    {Code::PublicserverTerminaluploadInterval,     "/publicserver/terminalupload/interval",     600000U,               Area::All,         flagged, shown,  free},
    {Code::PublicserverTerminaluploadTarget,       "/publicserver/terminalupload/target",       empty,                 Area::All,         flagged, shown,  free},
    {Code::PublicserverTerminaluploadVerification, "/publicserver/terminalupload/verification", empty,                 Area::All,         flagged, shown,  free},
    {Code::PublicserverProxyHost,                  "/publicserver/proxy/host",                  empty,                 Area::All,         flagged, shown,  free},
    {Code::PublicserverProxyPort,                  "/publicserver/proxy/port",                  0U,                    Area::All,         flagged, shown,  free},
    {Code::PublicserverProxyUser,                  "/publicserver/proxy/user",                  empty,                 Area::All,         flagged, shown,  free},
    {Code::PublicserverProxyPassword,              "/publicserver/proxy/password",              empty,                 Area::All,         flagged, secret, free},
    {Code::CryptoGpgkey,                           "/crypto/gpgkey",                            empty,                 Area::All,         flagged, secret, protectedKey},
    {Code::CryptoPassphrase,                       "/crypto/passphrase",                        empty,                 Area::All,         flagged, secret, free},
    {Code::CryptoVendors,                          "/crypto/vendors",                           empty,                 Area::All,         flagged, shown,  idList},
    {Code::DeviceBackgroundimage,                  "/device/backgroundimage",                   empty,                 Area::All,         flagged, shown,  free},
    {Code::DatahandlingArchiveduration,            "/datahandling/archiveduration",             30U,                   Area::All,         flagged, shown,  free},
    {Code::DatahandlingUsbkeyclear,                usbkeyclear,                                 text(usbkeyclear),     Area::All,         flagged, shown,  free},
};
// clang-format on

const Setting unknownSetting{};

template <typename Question>
const Setting *find(const Question &question)
{
    const auto found = std::find_if(catalogue.begin(), catalogue.end(), question);
    return found == catalogue.end() ? nullptr : &*found;
}

} // namespace

const QVector<Setting> &settingsCatalogue()
{
    return catalogue;
}

const Setting &settingOf(SettingsCode code)
{
    const Setting *found = find([code](const Setting &setting) { return setting.code == code; });
    return found == nullptr ? unknownSetting : *found;
}

const Setting *settingAt(const QString &keyPath)
{
    return find([&](const Setting &setting) { return keyPath == QLatin1String(setting.key); });
}

} // namespace aux
