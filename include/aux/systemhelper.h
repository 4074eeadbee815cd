// SPDX-License-Identifier: MIT
#ifndef AUX_SYSTEMHELPER_H
#define AUX_SYSTEMHELPER_H

#include <aux/error.h>
#include <aux/export.h>

#include <QDateTime>
#include <QString>
#include <QVector>

#include <utility>

struct wpa_ctrl;

namespace aux
{

/// Sets the terminal's clock, runs its Wi-Fi daemon and tells what its network links are worth.
/// @shown{system,scan}
///
/// *Guarantees*: what the daemon is doing is looked up each time. Any thread may call, several may
/// connect at once; a control handle belongs to one thread at a time. A null handle is safe
/// everywhere. Where a program is run, the operation blocks until it ends, however long that takes.
/// A request to the daemon ends after 10 seconds, whatever arrives meanwhile; its answer is never
/// one to an earlier request or an event, which are discarded. (That is certain up to 12 seconds
/// that the daemon takes for each.)
class AUX_EXPORT SystemHelper
{
public:
    /// A Wi-Fi network in reach.
    struct WifiInfo {
        /// The name as the daemon writes it: bytes that are no printable ASCII are escaped, white
        /// space around the name is kept.
        QString essid;
        /// From 0, barely there, to 3, best.
        int quality = 0;
        /// 0: nothing is known; 1: no WPA2 pass phrase; 2: WPA2 with a pass phrase.
        int security = 0;
    };

    SystemHelper() = default;

    /// @name Clock and file systems
    /// No result; what fails shows only in the debug log.
    /// @{

    /// Sets the system's clock to the whole second at or below the given time, then the hardware
    /// clock from it ("hwclock --systohc -u", in UTC). Blocks until that is done.
    ///
    /// Where the clock cannot be set, the hardware clock stays as well and the meaning of the
    /// errno goes to the debug log (EFAULT, EINVAL and EPERM have one). An invalid time, or on 32
    /// bits one after January 2038, counts as EINVAL: "Timezone (or something else) is invalid."
    /// @shown{system,setTime}
    static void setSystemTime(const QDateTime &time);
    /// Remounts a file system read-only, once, without a sync before it. Does nothing for an empty
    /// mount point. Blocks while "/bin/mount" runs.
    ///
    /// The mount point goes to the shell as it is: give plain paths, and none from outside. The
    /// command goes to the debug log after "remountReadOnly" and ": trying: ".
    /// @shown{system,remount}
    static void remountReadOnly(const QString &mountPoint);
    /// @}

    /// @name The Wi-Fi daemon
    /// wpa_supplicant on the interface wlan0. It counts as running while its control socket,
    /// "/var/run/wpa_supplicant/wlan0", exists. Nothing here waits or retries. Every failure has
    /// the id 10001.
    /// @{

    /// Starts the daemon in the background with "/etc/wpa_supplicant.conf".
    ///
    /// @fails with "SystemHelper: cannot start wpa_supplicant, control socket already exists", also
    /// for a stale one, or "SystemHelper: cannot start wpa_supplicant".
    /// @shown{system,start}
    static Error wpaSupplicantStart();
    /// Asks the daemon to end, and does not wait for it.
    ///
    /// @fails with "SystemHelper: cannot stop wpa_supplicant, control socket does not exist" or
    /// "SystemHelper: cannot stop wpa_supplicant".
    /// @shown{system,stop}
    static Error wpaSupplicantStop();
    /// Kills every wpa_supplicant of the system (SIGKILL) and removes the control socket.
    ///
    /// @fails with "SystemHelper: wpa_supplicant not killed", also where none runs; then a stale
    /// control socket deliberately stays.
    /// @shown{system,start}
    static Error wpaSupplicantForceKill();
    /// Opens a control connection and registers it for the daemon's events. The handle is the
    /// caller's, to be given back with wpaSupplicantDisconnect; null on failure.
    ///
    /// @fails with "SystemHelper: cannot open wpa_supplicant control interface" or
    /// "SystemHelper: cannot attach to wpa_supplicant control interface". One request.
    /// @shown{system,scan}
    [[nodiscard]] static std::pair<Error, wpa_ctrl *> wpaSupplicantConnect();
    /// Closes a control connection, which is one request; the handle is invalid afterwards. Never
    /// fails; for null the debug log says "wpaSupplicantDisconnect" and
    /// ": wpa control handle is NULL".
    /// @shown{system,scan}
    static Error wpaSupplicantDisconnect(wpa_ctrl *ctrl);
    /// @}

    /// @name Wi-Fi
    /// Over a connection of wpaSupplicantConnect; no failures, the debug log tells. Of a longer
    /// answer only the first 4095 bytes count.
    /// @{

    /// Asks for a scan and lists the networks that the daemon knows right now, the best quality
    /// first, each name once with its best quality. Does not wait for the scan: its results are in
    /// a later call. Two requests, of which the second needs the first answered.
    ///
    /// Quality from the signal level in dBm: 3 from -50, 2 from -65, 1 from -80, 0 from -120;
    /// every level read is logged as "wpaInfoLevelToQuality" and ": level: ". An empty list is
    /// explained as "wpaNetworkScan" and one of ": wpa control handle is NULL",
    /// ": scan request failed", ": collecting scan results failed", ": empty scan result"; a
    /// network left out as "wpaInfoFromScanResultString", the daemon's line, and before it one of
    /// ": line parse error, skipping: ", ": empty ESSID, skipping: ",
    /// ": ESSID contains all-whitespace, skipping: ",
    /// ": ESSID has implausible signal level, skipping: " (below -120, 0 or above, no number).
    /// @shown{system,scan}
    static QVector<WifiInfo> wpaNetworkScan(wpa_ctrl *ctrl);
    /// Returns the quality of the current link, as wpaNetworkScan grades it, and whether wlan0 is
    /// connected. An implausible level gives 4; without connection or level the quality is 0. One
    /// request while wlan0 is connected.
    ///
    /// Writes the lines of ifaceIsConnected and the level's; and as "wpaNetworkStatus"
    /// ": wpa control handle is NULL" or (deliberately in these words) ": scan request failed".
    /// @shown{system,status}
    static std::pair<int, bool> wpaNetworkStatus(wpa_ctrl *ctrl);
    /// @}

    /// @name Links
    /// What the kernel says below "/sys/class/net/".
    /// @{

    /// Returns whether an interface has a carrier and is in the operational state up.
    ///
    /// The debug log says "ifaceIsConnected", the interface and ": carrier and up", ": no carrier"
    /// (also while the interface is set down) or ": not up"; or ": sysfs entry missing: " and the
    /// interface's directory, or ": error opening sysfs entry for" and the interface.
    /// @shown{system,link}
    static bool ifaceIsConnected(const QString &iface);
    /// ifaceIsConnected for the wired interface, eth0.
    /// @shown{system,link}
    static bool lanNetworkStatus();
    /// @}
};

} // namespace aux

#endif
