// SPDX-License-Identifier: MIT
#include "config/validation.h"
#include "containerfile.h"
#include "location.h"
#include "network.h"
#include "output.h"
#include "settings.h"
#include "streams.h"
#include "trustedkeys.h"

#include <aux/systemhelper.h>
#include <aux/systeminfo.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QProcess>
#include <QStorageInfo>
#include <QSysInfo>

namespace auxctl
{

namespace
{

/// What is found out, and what could not be.
class Report
{
public:
    void add(const QString &name, const QJsonValue &value) { m_object[name] = value; }

    /// Calls the function; where that fails, what it was to look at has not been seen.
    template <typename Function>
    void tryTo(const QString &name, const Function &function)
    {
        try {
            function();
        } catch (const Failure &failure) {
            const QString cause = failure.error.getExtraData();
            m_unseen += name + ": " + (cause.isEmpty() ? failure.error.getMsg() : cause);
        }
    }

    /// Adds what the function returns, where it does.
    template <typename Function>
    void look(const QString &name, const Function &function)
    {
        tryTo(name, [&] { add(name, function()); });
    }

    [[nodiscard]] QJsonObject object() const
    {
        QJsonObject object = m_object;
        object["unseen"] = QJsonArray::fromStringList(m_unseen);
        return object;
    }

private:
    QJsonObject m_object;
    QStringList m_unseen;
};

/// The first line that a program prints; a failure where it cannot be run.
QString versionOf(const QString &program, const QString &option)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, {option});
    constexpr int patience = 5000; // milliseconds
    if (!process.waitForFinished(patience) || process.exitCode() != 0)
        fail(QStringLiteral("%1 does not run").arg(program));
    return QString::fromUtf8(process.readLine()).trimmed();
}

/// Later than this program was made, and within its life.
bool isPlausible(const QDateTime &moment)
{
    constexpr int years = 30;
    const QDateTime made = QFileInfo(QStringLiteral("/proc/self/exe")).lastModified();
    return moment >= made && moment < made.addYears(years);
}

/// What is wrong with the settings that are in the file; those that are not have their defaults.
QJsonArray problemsOf(const QString &path)
{
    QJsonArray problems;
    if (!QFileInfo::exists(path))
        return problems;
    const aux::Candidate candidate = aux::readCandidate(path);
    for (const aux::Fault &fault : aux::findFaults(candidate)) {
        if (fault.setting == nullptr || candidate.contains(*fault.setting))
            problems += fault.error.getMsg();
    }
    return problems;
}

QJsonObject settingsOf(const aux::Configuration &configuration)
{
    const aux::CurrentSettings current;
    QJsonArray values;
    for (const Setting &setting : aux::settingsCatalogue())
        values += toObject(shown(setting, current.value(setting), false).record);
    return {{"path", configuration.getFileName()},
            {"version", configuration.getVersion()},
            {"commits", configuration.getChangeCounter()},
            {"settings", values},
            {"problems", problemsOf(configuration.getFileName())}};
}

bool isIntact(const QString &container)
{
    try {
        return ContainerFile(container).hasDigest();
    } catch (const Failure &) {
        return false; // not even its header can be read
    }
}

/// The containers among the files that do not pass verification.
QJsonArray damagedOf(const QFileInfoList &files, const QString &location, Report &report)
{
    QJsonArray damaged;
    for (const QFileInfo &file : files) {
        report.tryTo(location, [&] {
            if (isContainer(file.filePath()) && !isIntact(file.filePath()))
                damaged += file.fileName();
        });
    }
    return damaged;
}

QJsonObject describe(aux::DirLocation location, const QString &name, Report &report)
{
    checked(aux::FsHelper::createDirList(location)); // which says why it cannot be read
    const QString path = aux::FsHelper::dirLocationToFullPath(location);
    const QFileInfoList files = QDir(path).entryInfoList(QDir::Files | QDir::Hidden, QDir::Time);
    return {{"location", name},
            {"path", path},
            {"freeBytes", QStorageInfo(path).bytesAvailable()},
            {"count", files.size()},
            {"newest", files.isEmpty() ? QString() : timeText(files.first().lastModified())},
            {"oldest", files.isEmpty() ? QString() : timeText(files.last().lastModified())},
            {"damaged", damagedOf(files, name, report)}};
}

void lookAtLocations(Report &report)
{
    QJsonArray locations;
    for (const QString &name : locationNames())
        report.tryTo(name, [&] { locations += describe(locationFromName(name), name, report); });
    report.add("locations", locations);
}

void lookAtSystem(Report &report)
{
    using aux::SystemInfo;
    const QDateTime now = QDateTime::currentDateTime();
    report.add("time", timeText(now));
    report.add("isTimePlausible", isPlausible(now));
    report.look("serial", [] {
        check(SystemInfo::loadSerialNumber());
        return SystemInfo::getSerialNumber();
    });
    report.add("bsp", SystemInfo::getBspId());
    report.add("version", SystemInfo::getVersion());
    report.add("qt", qVersion());
    report.add("kernel", QSysInfo::kernelVersion());
    report.look("gpg", [] { return versionOf("gpg", "--version"); });
    report.look("gpgv", [] { return versionOf("gpgv", "--version"); });
    report.look("supplicant", [] { return versionOf("/usr/sbin/wpa_supplicant", "-v"); });
    report.add("network", networkInUse());
    report.add("wifiMac", SystemInfo::getWifiMac());
    report.add("link", aux::SystemHelper::lanNetworkStatus());
    report.look("wifi", [] {
        auto *control = checked(aux::SystemHelper::wpaSupplicantConnect());
        const auto [quality, isConnected] = aux::SystemHelper::wpaNetworkStatus(control);
        check(aux::SystemHelper::wpaSupplicantDisconnect(control));
        return QJsonObject{{"connected", isConnected}, {"quality", quality}};
    });
}

Result makeReport(const Call &call)
{
    Report report;
    lookAtSystem(report);
    report.look("configuration", [&call] {
        aux::Configuration configuration;
        open(configuration, call);
        return settingsOf(configuration);
    });
    lookAtLocations(report);
    report.add("isSignatureRequired", requiresSignatures()); // of a configuration
    report.look("trustedKeys", [] { return table(descriptionsOf(trustedKeys())).json; });
    const QByteArray text = jsonText(report.object());
    if (call.arguments().isEmpty())
        return {report.object(), QString::fromUtf8(text).trimmed()};
    Output output(call, call.argument(0), Access::Own);
    output.write(text);
    return output.commit({report.object(), "path:  " + printable(output.path())});
}

constexpr const char *shape =
    "{serial?: text, bsp: text, version: text, qt: text, kernel: text, gpg?: text, "
    "gpgv?: text, supplicant?: text, time: text, isTimePlausible: bool, link: bool, wifiMac: text, "
    "wifi?: {connected: bool, quality: number}, network: " AUXCTL_NETWORK_SHAPE
    ", configuration?: {path: text, version: text, commits: number, settings: "
    "[{key: text, value?: scalar, secret?: bool, default: scalar}], problems: [text]}, "
    "locations: [{location: text, path: text, freeBytes: number, count: number, newest: text, "
    "oldest: text, damaged: [text]}], isSignatureRequired: bool, trustedKeys?: " AUXCTL_KEYS_SHAPE
    ", "
    "unseen: [text]}";

const Registration row{{"report",
                        "[FILE]",
                        "report",
                        shape,
                        "Gather what support asks for in one JSON document, without secrets",
                        {&applicationOption, &forceOption},
                        makeReport}};

} // namespace

} // namespace auxctl
