// SPDX-License-Identifier: MIT
#include "config/validation.h"
#include "containerfile.h"
#include "fs/datadirectories.h"
#include "output.h"
#include "settings.h"
#include "streams.h"

#include <aux/systemhelper.h>
#include <aux/systeminfo.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
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

    /// Adds what the function returns, or why there is nothing.
    template <typename Function>
    void look(const QString &name, const Function &function)
    {
        try {
            add(name, function());
        } catch (const Failure &failure) {
            m_unseen += QStringLiteral("%1: %2").arg(name, failure.error.getMsg());
        }
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

QString time(const QDateTime &moment)
{
    return moment.toUTC().toString(Qt::ISODate);
}

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

QJsonObject settingsOf(const aux::Configuration &configuration)
{
    QJsonArray values;
    for (const Setting &setting : aux::settingsCatalogue())
        values += toObject(shown(setting, configuration.getValue(setting.code), false).record);
    QStringList faults;
    for (const aux::Fault &fault : aux::findFaults(aux::readCandidate(configuration.getFileName())))
        faults += fault.error.getMsg();
    return {{"path", configuration.getFileName()},
            {"version", configuration.getVersion()},
            {"commits", configuration.getChangeCounter()},
            {"settings", values},
            {"faults", QJsonArray::fromStringList(faults)}};
}

/// The containers among the files whose digest is wrong.
QJsonArray damagedOf(const QFileInfoList &files)
{
    QJsonArray damaged;
    for (const QFileInfo &file : files) {
        try {
            if (!ContainerFile(file.filePath()).hasDigest())
                damaged += file.fileName();
        } catch (const Failure &) {
            continue; // no container
        }
    }
    return damaged;
}

QJsonObject describe(const aux::DataDirectory &directory)
{
    const QFileInfo place(directory.path);
    if (!place.isDir() || !place.isReadable())
        fail(QStringLiteral("%1 cannot be read").arg(directory.path));
    const QFileInfoList files =
        QDir(directory.path).entryInfoList(QDir::Files | QDir::Hidden, QDir::Time);
    return {{"path", directory.path},
            {"free", QStorageInfo(directory.path).bytesAvailable()},
            {"count", files.size()},
            {"newest", files.isEmpty() ? QString() : time(files.first().lastModified())},
            {"oldest", files.isEmpty() ? QString() : time(files.last().lastModified())},
            {"damaged", damagedOf(files)}};
}

void lookAtLocations(Report &report)
{
    Report locations;
    for (const aux::DataDirectory &directory : aux::dataDirectories().mid(1)) // not the invalid one
        locations.look(directory.name, [&directory] { return describe(directory); });
    report.add("locations", locations.object());
}

void lookAtSystem(Report &report)
{
    using aux::SystemInfo;
    const QDateTime now = QDateTime::currentDateTime();
    report.add("time", time(now));
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
    report.look("supplicant", [] { return versionOf("/usr/sbin/wpa_supplicant", "-v"); });
    report.add("network", SystemInfo::getNetworkInfo("eth0"));
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
    const QByteArray text = QJsonDocument(report.object()).toJson();
    if (call.arguments().isEmpty())
        return {report.object(), QString::fromUtf8(text).trimmed()};
    Output output(call, call.argument(0), Access::Own);
    output.write(text);
    return output.commit({report.object(), "path:  " + printable(output.path())});
}

const Registration row{{"report",
                        "[FILE]",
                        "report",
                        "object",
                        "Gather what support asks for in one JSON document, without secrets",
                        {&applicationOption, &forceOption},
                        makeReport}};

} // namespace

} // namespace auxctl
