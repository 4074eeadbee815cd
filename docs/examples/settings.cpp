// SPDX-License-Identifier: MIT
#include "examples.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>

namespace examples
{

//! [open]
// Once, before anything else is done with the object. The two names are those of the file.
void open(aux::Configuration &configuration)
{
    QCoreApplication::setOrganizationName("organisation");
    QCoreApplication::setApplicationName("terminal");
    configuration.init();
    qInfo() << "settings:" << configuration.getFileName();
}
//! [open]

//! [write]
// A write that failed is not reported, so whoever must know asks the file.
bool writeDataPort(aux::Configuration &configuration, unsigned int port)
{
    configuration.setValue(aux::SettingsCode::NetworkDataport, port); // an int would be refused
    QFile file(configuration.getFileName());
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QJsonObject network =
        QJsonDocument::fromJson(file.readAll()).object().value("network").toObject();
    return network.value("dataport").toInt(-1) == static_cast<int>(port);
}
//! [write]

//! [read]
// A setting that the file lacks has its default, so there is nothing to check.
QString language(const aux::Configuration &configuration)
{
    return configuration.getValue(aux::SettingsCode::DeviceLang).toString();
}
//! [read]

//! [tryOut]
// Changes the network for as long as somebody agrees; otherwise it is what it was before.
bool tryNetwork(aux::Configuration &configuration, const QString &name,
                const std::function<bool()> &somebodyAgrees)
{
    configuration.snapshot(); // what rollback() writes
    configuration.setValue(aux::SettingsCode::NetworkWifiSsid, name);
    if (!configuration.changed(aux::SettingsArea::Network).anyChanged)
        return true;
    const bool stays = somebodyAgrees();
    stays ? configuration.commit() : configuration.rollback(aux::SettingsArea::Network);
    return stays;
}
//! [tryOut]

//! [state]
// What a status page shows of the settings.
QString state(const aux::Configuration &configuration)
{
    return QString("version %1, %2 commits, %3")
        .arg(configuration.getVersion())
        .arg(configuration.getChangeCounter())
        .arg(configuration.isToolsConfigured() ? "encrypting" : "no pass phrase");
}
//! [state]

//! [cryptoDevice]
// Whether a USB device that was plugged in, "1234:ABCD", is one for keys.
bool isCryptoDevice(const aux::Configuration &configuration, const QString &id)
{
    return configuration.getCryptoVidPidList().contains(id, Qt::CaseInsensitive);
}
//! [cryptoDevice]

//! [sync]
// Once there is room again: what could not be written meanwhile is.
void afterTheStorageWasFull(aux::Configuration &configuration)
{
    if (aux::FsHelper::checkFreeSpace(aux::DirLocation::Config, 1 << 20))
        configuration.sync();
}
//! [sync]

//! [validate]
// For a server's answer, which has room for one reason.
QString refusalOf(const QString &file)
{
    const aux::Error error = aux::Configuration::validateConfigFile(file);
    return error.hasError() ? error.getMsg() : QString();
}
//! [validate]

//! [faults]
// For somebody who mends the file: everything that is wrong with it, in the order of the settings.
QStringList faultsOf(const QString &file)
{
    QStringList faults;
    for (const aux::ErrorData &fault : aux::Configuration::findConfigFileFaults(file))
        faults += fault.getMsg();
    return faults;
}
//! [faults]

//! [apply]
// Takes the file into use as a whole, or leaves the settings as they are and says why.
bool takeIntoUse(aux::Configuration &configuration, const QString &file)
{
    const aux::Error error = configuration.applyConfigFile(file);
    if (error.hasError())
        qWarning() << error;
    return !error.hasError();
}
//! [apply]

//! [keep]
// Keeps the settings on a medium before those of the network are given up.
aux::Error startOver(aux::Configuration &configuration, const QString &backup)
{
    aux::Error error = configuration.writeConfigFile(backup); // holds the secrets, too
    if (error.hasError())
        return error;
    return configuration.resetToDefaults(aux::SettingsArea::Network);
}
//! [keep]

//! [keys]
// Settings and areas are keys of a QHash.
QString label(aux::SettingsCode setting, aux::SettingsArea area)
{
    static const QHash<aux::SettingsCode, QString> settings{
        {aux::SettingsCode::DeviceLang, "Language"}};
    static const QHash<aux::SettingsArea, QString> areas{{aux::SettingsArea::All, "Terminal"}};
    return areas.value(area, "other") + ": " + settings.value(setting, "other");
}
//! [keys]

} // namespace examples
