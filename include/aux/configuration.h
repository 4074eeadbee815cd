// SPDX-License-Identifier: MIT
#ifndef AUX_CONFIGURATION_H
#define AUX_CONFIGURATION_H

#include <aux/error.h>
#include <aux/export.h>

#include <QHash>
#include <QMap>
#include <QObject>
#include <QStringList>
#include <QVariant>

#include <memory>

namespace aux
{

class FairMutex;

/// The settings of the terminal, named like their key paths; the type is the one that
/// Configuration::setValue asks for. Defaults, and what a value must be like, are in
/// @ref settings. There is no setting 25; it is unknown like every value outside the list.
enum class SettingsCode : int {
    DeviceModeUsb = 0,                           ///< bool; one of the three modes must be on
    DeviceModeSerial = 1,                        ///< bool
    DeviceModeNetwork = 2,                       ///< bool
    DevicePin = 3,                               ///< QString, a hash
    DeviceLang = 4,                              ///< QString
    DeviceTimeManual = 5,                        ///< bool
    DeviceTimeTimezone = 6,                      ///< QString
    DeviceTimeNtpserver = 7,                     ///< QString
    DeviceTimeNtpport = 8,                       ///< unsigned int
    DeviceAudio = 9,                             ///< bool
    DeviceScreensaverEnabled = 10,               ///< bool
    DeviceScreensaverTimeout = 11,               ///< unsigned int
    DeviceDownloadreminderDrivercard = 12,       ///< unsigned int
    DeviceDownloadreminderDownloadkey = 13,      ///< unsigned int
    DeviceInfotext = 14,                         ///< QString
    DeviceRfid = 15,                             ///< bool
    DeviceRecordertype = 16,                     ///< QString
    NetworkMode = 17,                            ///< QString
    NetworkManual = 18,                          ///< bool
    NetworkIp = 19,                              ///< QString
    NetworkBroadcast = 20,                       ///< QString
    NetworkNetmask = 21,                         ///< QString
    NetworkGateway = 22,                         ///< QString
    NetworkNameserver = 23,                      ///< QString
    NetworkDataport = 24,                        ///< unsigned int
    NetworkWifiSsid = 26,                        ///< QString
    NetworkWifiPsk = 27,                         ///< QString
    PublicserverUrl = 28,                        ///< QString
    PublicserverUser = 29,                       ///< QString
    PublicserverTerminaluploadInterval = 30,     ///< unsigned int
    PublicserverTerminaluploadTarget = 31,       ///< QString
    PublicserverTerminaluploadVerification = 32, ///< QString
    PublicserverProxyHost = 33,                  ///< QString
    PublicserverProxyPort = 34,                  ///< unsigned int
    PublicserverProxyUser = 35,                  ///< QString
    PublicserverProxyPassword = 36,              ///< QString
    CryptoGpgkey = 37,                           ///< QString, see DataHelper::encryptKeyB64
    CryptoPassphrase = 38,                       ///< QString
    CryptoVendors = 39,                          ///< QString, a list of USB vendor:product ids
    DeviceBackgroundimage = 40,                  ///< QString
    DatahandlingArchiveduration = 41,            ///< unsigned int
    DatahandlingUsbkeyclear = 42,                ///< QString
};

/// Makes a setting a key of QHash. @shown{settings,keys}
inline uint qHash(SettingsCode code, uint seed = 0) noexcept
{
    return ::qHash(static_cast<int>(code), seed);
}

/// The groups of settings that are compared and rolled back together. A value outside the list
/// is a group without members.
enum class SettingsArea : int {
    All = 0,         ///< every setting
    Network = 1,     ///< the ten settings of the network
    Time = 2,        ///< the clock by hand, NTP server and port; deliberately not the time zone
    Screensaver = 3, ///< both settings of the screen saver
    Mode = 4,        ///< the three operating modes
};

/// Makes an area a key of QHash. @shown{settings,keys}
inline uint qHash(SettingsArea area, uint seed = 0) noexcept
{
    return ::qHash(static_cast<int>(area), seed);
}

/// What changed in an area since the last snapshot.
struct ChangeState {
    bool flaggedChanged = false; ///< a setting that its users must be told about
    bool anyChanged = false;     ///< any setting
};

/// Reads and writes the settings of the terminal, and commits or rolls back a group of them.
/// @shown{settings,tryOut}
///
/// The settings live in one JSON file, "/data/config/<organisation>/<application>.JSON", which is
/// read and written through QSettings: after init() a default-constructed QSettings of the
/// process uses the same file. A setting that is missing there has its default value.
///
/// *Guarantees*: any thread may call; operations of one object follow one another, and any number
/// of objects, threads and processes may share the file. Writers take turns in the order in which
/// they came. When an operation that writes has returned, the new text is on the storage and
/// survives a power cut. The file is replaced as a whole: whenever the process is killed, the power
/// fails, or the storage is full or refuses to be written, it holds either the old or the new text.
/// A new file and its directory are for their owner only; an existing file keeps its mode and,
/// where root writes it, its owner and group.
///
/// A write that failed is not reported. Its value stays pending in the process, where it is what
/// this class reads (other QSettings objects don't), until a later write or sync() succeeds or the
/// process ends. A file that cannot be read, is no regular file or larger than 128 MiB, stays as it
/// is: reading gives the defaults, writing leaves the values pending, commit() does nothing, and a
/// snapshot holds nothing that rollback() would write. One that holds text, but no JSON object, is
/// kept as "<file>.bad" (mode 0600, the latest one only) before a write replaces it; where that
/// fails the file stays.
///
/// Writing blocks until all file systems are flushed, and while other processes write. A lock
/// beside the file that no writer holds delays a write by three seconds at most; QSettings of
/// another process that writes delays each writer by thirty, and a writer that is stopped all
/// others until it goes on. QSettings objects of the application's own know none of this: one that
/// writes replaces a file that it could not read. Reading waits for the storage, and for a write by
/// the same object. A process made by fork() while another thread writes must not use the settings
/// before it has executed a program. Where the process has a limit on the size of files
/// (RLIMIT_FSIZE), a write beyond it ends the process by SIGXFSZ, unless that is ignored.
///
/// Misuse is reported by a debug line only: `<operation> : not initialized`, and what the
/// operations name.
class AUX_EXPORT Configuration : public QObject
{
    Q_OBJECT

public:
    Configuration();
    ~Configuration() override;

    /// Makes the settings file known to QSettings, as the process's default format "JSON" in
    /// "/data/config", removes a lock that nobody holds, and takes the first snapshot.
    ///
    /// To be called once, before all operations that don't say otherwise. A second call does
    /// nothing but write the debug line `init : already initialized`. @shown{settings,open}
    void init();

    /// Returns the setting's value, its default where the file has none.
    ///
    /// A number read from the file is an int, also that of an unsigned setting as soon as it is
    /// written; one that does not fit an int, or is no whole number, is 0. Invalid for an unknown
    /// code (Qt warns of the empty key), and before init(). @shown{settings,read}
    QVariant getValue(SettingsCode code) const;

    /// Writes the setting to the file.
    ///
    /// The value must be of exactly the setting's type: for an unsigned setting an int is refused.
    /// Else nothing is written but the debug line `setValue : type mismatch`. A number from 2^31 on
    /// is in the file, and is read, as the negative one that is 2^32 less. @shown{settings,write}
    void setValue(SettingsCode code, const QVariant &value);

    /// Returns the path of the settings file; null before init(). @shown{settings,open}
    QString getFileName() const;
    /// Returns the text under "version" in the file, empty where there is none. Also before
    /// init(), from the QSettings that the process then has. @shown{settings,state}
    QString getVersion() const;
    /// Returns the number of commits counted in the file; 0 before init(). @shown{settings,state}
    int getChangeCounter() const;
    /// Writes what is pending after a failed write, and what other QSettings objects of the process
    /// have not yet written. Also before init(), for the QSettings that the process then has.
    /// @shown{settings,sync}
    void sync();
    /// Returns whether a pass phrase is set; false before init(). @shown{settings,state}
    bool isToolsConfigured() const;
    /// Returns the USB devices that are taken for crypto devices, each as "vendor:product"
    /// (DataHelper::vIdpIdListFromString). Also before init().
    ///
    /// Empty for a malformed list, with the debug line
    /// `getCryptoVidPidList : invalid vendor:product id list`. @shown{settings,cryptoDevice}
    QStringList getCryptoVidPidList() const;

    /// @name Changes
    /// A snapshot holds the value of every setting. Before init() these do nothing but write the
    /// debug line.
    /// @{

    /// Takes a new snapshot of the file. @shown{settings,tryOut}
    void snapshot();
    /// Writes the values of the snapshot back to the file, for every setting of the area.
    /// @shown{settings,tryOut}
    void rollback(SettingsArea area);
    /// Compares the area's settings in the file with the snapshot. Values are compared, not their
    /// types. The debug line of this one is `_changed : not initialized`. @shown{settings,tryOut}
    ChangeState changed(SettingsArea area) const;
    /// Where any setting differs from the snapshot, counts one commit in the file and takes a new
    /// snapshot; else does nothing. @shown{settings,tryOut}
    void commit();
    /// @}

    /// Checks whether a file can be taken into use as the settings file.
    ///
    /// Reads the file only, afresh and once, at most 1 MiB of it. No lock is taken: nobody may
    /// write it meanwhile. Values are converted, so that the text "9000" is a number.
    ///
    /// @fails with the first of these that is found, in this order:
    /// - 10001 "Config file does not exist"
    /// - 10002 "Invalid config file. Missing <key path>": every setting must be there; of several
    ///   the one with the lowest code is named. Also where the file is no JSON object, no regular
    ///   file, larger, or cannot be read.
    /// - 10002 "Invalid pin hash length: <length>"
    /// - 10002 "Cannot use internal CGI port as dataport: <port>"
    /// - 10002 "Invalid config file. GPG Key invalid size"
    /// - 10002 "USB VID:PID list syntax error": the error of DataHelper::vIdpIdListFromString
    /// - 10002 "All operating modes disabled. At least one mode must be enabled."
    /// @shown{settings,validate}
    static Error validateConfigFile(const QString &fileName);

    /// Finds everything that is wrong with a file, read like by validateConfigFile but without any
    /// conversion: a number in quotes has the wrong type.
    ///
    /// One entry each, which iterating the error gives in the order of the settings' codes; that
    /// of the operating modes stands at the first of them.
    ///
    /// @fails with those of validateConfigFile and
    /// - 10002 "Wrong type of <key path>, expected <what it may be>"
    /// - 10002 "Not readable as JSON: <reason>", alone; where it is a syntax error the reason
    ///   begins with "line <number>, column <number>: ", counted from 1, where it was noticed
    /// @shown{settings,faults}
    static Error findConfigFileFaults(const QString &fileName);

    /// Takes a file into use: checks it and writes all of its settings to the settings file at
    /// once. Where that changes any value one commit is counted, and a new snapshot is taken.
    ///
    /// The file is read once, so what is checked is what is written; other members of it, such as
    /// "version", are left out. When the process is killed or the power fails, the settings file
    /// holds either all of the old settings or all of the new ones. After a failure nothing is
    /// changed, now or later.
    ///
    /// @fails with those of findConfigFileFaults, with 10001
    /// "applyConfigFile: Failed to write to output file",
    /// "applyConfigFile: Failed to open file for writing" or, of the settings file,
    /// "applyConfigFile: Failed to open file for reading", and before init() with 10001
    /// "applyConfigFile: not initialized", which is a debug line too. @shown{settings,apply}
    Error applyConfigFile(const QString &fileName);

    /// Writes all settings, those that have their defaults too, to a file that applyConfigFile
    /// takes. It holds the secrets: its mode is 0600. A file of that name is replaced.
    ///
    /// The file appears whole, and on the storage, or not at all.
    ///
    /// @fails with 10001
    /// "writeConfigFile: Failed to open file for writing",
    /// "writeConfigFile: Failed to write to output file",
    /// "writeConfigFile: Failed to open file for reading" (the settings file), and before init()
    /// "writeConfigFile: not initialized", which is a debug line too. @shown{settings,keep}
    Error writeConfigFile(const QString &fileName) const;

    /// Takes the settings of an area out of the settings file, so that they have their defaults,
    /// in the way of applyConfigFile.
    ///
    /// @fails with 10001 "resetToDefaults: Failed to write to output file",
    /// "resetToDefaults: Failed to open file for writing",
    /// "resetToDefaults: Failed to open file for reading", and before init()
    /// "resetToDefaults: not initialized", which is a debug line too. @shown{settings,keep}
    Error resetToDefaults(SettingsArea area);

private:
    // The caller holds the mutex.
    bool _isInitialized(const char *operation) const;
    void _readSnapshot();
    void _writeSnapshot(SettingsArea area) const;
    ChangeState _changed(SettingsArea area) const;
    Error _commitChanges(const char *operation, const QMap<SettingsCode, QVariant> &changes);

    std::unique_ptr<FairMutex> m_mutex;
    bool m_initialized = false;
    QHash<SettingsCode, QVariant> m_snapshot;
};

} // namespace aux

#endif
