// SPDX-License-Identifier: MIT
#include "config/catalogue.h"

#include <algorithm>

namespace aux
{

namespace
{

using Code = SettingsCode;
using Area = SettingsArea;

QVariant text(const char *value)
{
    return QString::fromUtf8(value);
}

constexpr bool plain = false;
constexpr bool flagged = true;

const QVariant empty = text("");
const QVariant noAddress = text("000.000.000.000");

const QList<Area> general{Area::All};
const QList<Area> network{Area::All, Area::Network};
const QList<Area> time{Area::All, Area::Time};
const QList<Area> screensaver{Area::All, Area::Screensaver};
const QList<Area> mode{Area::All, Area::Mode};

// Its key path is also its default value, as odd as that looks.
constexpr const char *usbkeyclear = "/datahandling/usbkeyclear";

// clang-format off
const QHash<Code, _SetMeta> catalogue{
    {Code::DeviceModeUsb,                          {"/device/mode/usb",                          plain,   true,                  mode}},
    {Code::DeviceModeSerial,                       {"/device/mode/serial",                       plain,   true,                  mode}},
    {Code::DeviceModeNetwork,                      {"/device/mode/network",                      plain,   true,                  mode}},
    {Code::DevicePin,                              {"/device/pin",                               flagged, empty,                 general}},
    {Code::DeviceLang,                             {"/device/lang",                              plain,   text("en_GB"),         general}},
    {Code::DeviceTimeManual,                       {"/device/time/manual",                       plain,   true,                  time}},
    {Code::DeviceTimeTimezone,                     {"/device/time/timezone",                     plain,   text("Europe/Berlin"), general}},
    {Code::DeviceTimeNtpserver,                    {"/device/time/ntpserver",                    plain,   empty,                 time}},
    {Code::DeviceTimeNtpport,                      {"/device/time/ntpport",                      plain,   0U,                    time}},
    {Code::DeviceAudio,                            {"/device/audio",                             plain,   true,                  general}},
    {Code::DeviceScreensaverEnabled,               {"/device/screensaver/enabled",               plain,   true,                  screensaver}},
    {Code::DeviceScreensaverTimeout,               {"/device/screensaver/timeout",               plain,   40U,                   screensaver}},
    {Code::DeviceDownloadreminderDrivercard,       {"/device/downloadreminder/drivercard",       flagged, 28U,                   general}},
    {Code::DeviceDownloadreminderDownloadkey,      {"/device/downloadreminder/downloadkey",      flagged, 90U,                   general}},
    {Code::DeviceInfotext,                         {"/device/infotext",                          flagged, empty,                 general}},
    {Code::DeviceRfid,                             {"/device/rfid",                              flagged, true,                  general}},
    {Code::DeviceRecordertype,                     {"/device/recordertype",                      flagged, text("default"),       general}},
    {Code::NetworkMode,                            {"/network/mode",                             plain,   text("LAN"),           network}},
    {Code::NetworkManual,                          {"/network/manual",                           plain,   false,                 network}},
    {Code::NetworkIp,                              {"/network/ip",                               plain,   noAddress,             network}},
    {Code::NetworkBroadcast,                       {"/network/broadcast",                        plain,   noAddress,             network}},
    {Code::NetworkNetmask,                         {"/network/netmask",                          plain,   noAddress,             network}},
    {Code::NetworkGateway,                         {"/network/gateway",                          plain,   noAddress,             network}},
    {Code::NetworkNameserver,                      {"/network/nameserver",                       plain,   empty,                 network}},
    {Code::NetworkDataport,                        {"/network/dataport",                         plain,   defaultDataPort,       network}},
    {Code::NetworkWifiSsid,                        {"/network/wifi/ssid",                        plain,   empty,                 network}},
    {Code::NetworkWifiPsk,                         {"/network/wifi/psk",                         plain,   empty,                 network}},
    {Code::PublicserverUrl,                        {"/publicserver/url",                         flagged, empty,                 general}},
    {Code::PublicserverUser,                       {"/publicserver/user",                        flagged, empty,                 general}},
    {Code::PublicserverTerminaluploadInterval,     {"/publicserver/terminalupload/interval",     flagged, 600000U,               general}},
    {Code::PublicserverTerminaluploadTarget,       {"/publicserver/terminalupload/target",       flagged, empty,                 general}},
    {Code::PublicserverTerminaluploadVerification, {"/publicserver/terminalupload/verification", flagged, empty,                 general}},
    {Code::PublicserverProxyHost,                  {"/publicserver/proxy/host",                  flagged, empty,                 general}},
    {Code::PublicserverProxyPort,                  {"/publicserver/proxy/port",                  flagged, 0U,                    general}},
    {Code::PublicserverProxyUser,                  {"/publicserver/proxy/user",                  flagged, empty,                 general}},
    {Code::PublicserverProxyPassword,              {"/publicserver/proxy/password",              flagged, empty,                 general}},
    {Code::CryptoGpgkey,                           {"/crypto/gpgkey",                            flagged, empty,                 general}},
    {Code::CryptoPassphrase,                       {"/crypto/passphrase",                        flagged, empty,                 general}},
    {Code::CryptoVendors,                          {"/crypto/vendors",                           flagged, empty,                 general}},
    {Code::DeviceBackgroundimage,                  {"/device/backgroundimage",                   flagged, empty,                 general}},
    {Code::DatahandlingArchiveduration,            {"/datahandling/archiveduration",             flagged, 30U,                   general}},
    {Code::DatahandlingUsbkeyclear,                {usbkeyclear,                                 flagged, text(usbkeyclear),     general}},
};
// clang-format on

} // namespace

const QHash<SettingsCode, _SetMeta> &settingsCatalogue()
{
    return catalogue;
}

std::optional<SettingsCode> settingAt(const QString &keyPath)
{
    const auto found =
        std::find_if(catalogue.cbegin(), catalogue.cend(),
                     [&](const _SetMeta &meta) { return meta.keyPath() == keyPath; });
    if (found == catalogue.cend())
        return std::nullopt;
    return found.key();
}

} // namespace aux
