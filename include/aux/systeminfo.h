// SPDX-License-Identifier: MIT
#ifndef AUX_SYSTEMINFO_H
#define AUX_SYSTEMINFO_H

#include <aux/error.h>
#include <aux/export.h>

#include <QJsonObject>
#include <QString>

namespace aux
{

/// Tells who the terminal is and how it is connected.
/// @shown{system,identity}
///
/// *Guarantees*: reads only, and changes nothing on the terminal. Any thread may call. Only
/// isTouchscreenDetected runs a program or waits, for two seconds at most. Serial number and
/// hardware addresses are found once and then stay for the life of the process, as do references to
/// them.
class AUX_EXPORT SystemInfo
{
public:
    SystemInfo() = default;

    /// @name Identity
    /// @{

    /// Returns the serial number; empty until loadSerialNumber has run.
    /// @shown{system,identity}
    static const QString &getSerialNumber();
    /// Takes the Ethernet address, without its colons, for the serial number. Does nothing once
    /// there is a serial number, be it the substitute.
    ///
    /// @fails as loadEthernetMac does, and then leaves the serial number empty; or with 10001
    /// "SystemInfo: invalid serial number format" where the address has fewer than 5 digits, and
    /// then makes "000000000000" the serial number.
    /// @shown{system,identify}
    static Error loadSerialNumber();
    /// Remembers the hardware address of the first Ethernet interface in the system's order, up or
    /// not, whatever its name. Does nothing once there is an address.
    ///
    /// @fails with 10001 "SystemInfo: cannot find ethernet hardware address".
    /// @shown{system,identify}
    static Error loadEthernetMac();
    /// Returns the Wi-Fi address that belongs to the Ethernet address: its fourth octet plus one,
    /// in upper case. Empty unless loadSerialNumber has succeeded.
    ///
    /// Deliberately the octet has no leading zero: 0E gives the single digit F, and the colons
    /// still stand after every second digit. The reason for an empty result goes to the debug log
    /// as "getWifiMac" and one of ": empty eth mac address", ": eth mac address incorrect length",
    /// ": eth mac address bytes inconvertible" or ": eth mac address bytes not in range" (FF).
    /// @shown{system,identity}
    static const QString &getWifiMac();
    /// Returns the version of this library, four numbers with dots between. That of the library
    /// which a program was compiled with is AUX_VERSION_TEXT of aux/version.h.
    /// @shown{system,identity}
    static const QString &getVersion();
    /// Reads the build id of the board support package, the text of "/etc/build_id" without the
    /// white space around it; the file must be smaller than 20 bytes.
    ///
    /// The reason for an empty result goes to the debug log as "getBspId" and one of
    /// ": build id file does not exist", ": build id file exceeds size limit" or
    /// ": cannot open build id file". The reference stays good for the calling thread until its
    /// next call.
    /// @shown{system,identity}
    static const QString &getBspId();
    /// @}

    /// @name Network and clock
    /// No failures: what is absent is empty.
    /// @{

    /// Describes the first Ethernet and the first Wi-Fi interface in the system's order, up or not.
    ///
    ///     { "active": "eth",
    ///       "eth": { "interface": "eth0", "mac": "00:11:22:33:44:AB",
    ///                "ip": [ { "ip": "192.0.2.1", "type": "ip4" },
    ///                        { "ip": "fe80::1%eth0", "type": "ip6" } ] },
    ///       "wlan": {} }
    ///
    /// `iface` names the interface in use: "active" is "eth" for "eth0" while the Ethernet
    /// interface is up, "wlan" for "wlan0" while the Wi-Fi interface is up, else "none".
    /// Deliberately the name is compared with these two, not with that of the interface described.
    /// @shown{system,network}
    static QJsonObject getNetworkInfo(const QString &iface);
    /// Returns the first IPv4 address of an Ethernet or Wi-Fi interface that is up; empty if none.
    ///
    /// Deliberately, where several interfaces have one, it is that of the last interface in the
    /// system's order. The reference stays good for the calling thread until its next call.
    /// @shown{system,network}
    static const QString &getFirstActiveNetworkIPv4();
    /// Returns the time now in UTC: "year", "month" 1..12, "day" 1..31, "hour" 0..23, "minute" and
    /// "second" as numbers.
    /// @shown{system,clock}
    static QJsonObject getCurrentDateTimeUTCInfo();
    /// @}

    /// Returns whether the kernel's device database lists a touchscreen: runs "udevadm info
    /// --export-db" and looks for the property ID_INPUT_TOUCHSCREEN=1.
    ///
    /// Waits for the program for two seconds; then it is killed together with all it has started,
    /// and what it has written until then counts. The reason for a false goes to the debug log as
    /// "isTouchscreenDetected" and ": touch screen ident process failed" (missing, or an exit code
    /// other than 0) or ": touch screen not detected". A thread that blocks SIGCHLD or a process
    /// that ignores it changes nothing of this.
    /// @shown{system,touchscreen}
    static bool isTouchscreenDetected();
};

} // namespace aux

#endif
