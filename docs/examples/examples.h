// SPDX-License-Identifier: MIT
#ifndef AUX_EXAMPLES_H
#define AUX_EXAMPLES_H

#include <aux/configuration.h>
#include <aux/datahelper.h>
#include <aux/error.h>
#include <aux/fshelper.h>
#include <aux/systemhelper.h>

#include <QJsonObject>
#include <QMap>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <string>

/// What the reference shows. Each is a whole function of an application, to be copied.
namespace examples
{

// errors.cpp
aux::Error send(const QString &container, const QString &checksum);
bool isWorthRepeating(const aux::Error &error);
QStringList explain(const aux::Error &error);
std::string print(const aux::Error &error);
std::string printCause(const aux::Error &error);
aux::Error openModem(const QString &device);
aux::Error sendAll(const QMap<QString, QString> &checksums, QList<aux::Error> &failures);

// settings.cpp
void open(aux::Configuration &configuration);
bool writeDataPort(aux::Configuration &configuration, unsigned int port);
QString language(const aux::Configuration &configuration);
bool tryNetwork(aux::Configuration &configuration, const QString &name,
                const std::function<bool()> &somebodyAgrees);
QString state(const aux::Configuration &configuration);
bool isCryptoDevice(const aux::Configuration &configuration, const QString &id);
void afterTheStorageWasFull(aux::Configuration &configuration);
QString refusalOf(const QString &file);
QStringList faultsOf(const QString &file);
bool takeIntoUse(aux::Configuration &configuration, const QString &file);
aux::Error startOver(aux::Configuration &configuration, const QString &backup);
QString label(aux::SettingsCode setting, aux::SettingsArea area);

// files.cpp
aux::Error keep(const QString &download);
bool makeLocations();
QString pathIn(const QString &locationName, const QString &fileName);
QString locationNameOf(const QString &path);
bool copyCompanions(const QString &from, const QString &to);
QUrl background(const QString &configurationFile);
aux::Error waiting(QStringList &containers);
QString lamp();
bool hasRoomFor(qint64 bytes);
aux::Error resetTerminal();
bool isUnchanged(const QString &path, const QString &checksum);
QString label(aux::DirLocation location);

// containers.cpp
aux::Error exportLog(const QString &log, const QString &container);
aux::Error takeUpdate(const QString &container, const QString &directory);
QString label(aux::DataHelper::ZEL_FILE_TYPE type);
aux::Error checkVendors(const QString &text, QStringList &devices);

// keys.cpp
bool isOwnInverse(const QByteArray &data, const QByteArray &key);
aux::Error hideKey(aux::Configuration &configuration, const QByteArray &key,
                   const QString &passPhrase);
bool isPassPhrase(const aux::Configuration &configuration, const QString &passPhrase);
aux::Error importKey(const aux::Configuration &configuration);
aux::Error toText(const QString &file, const QString &text);
aux::Error fromText(const QString &text, const QString &file);
aux::Error convert(const QString &from, const QString &to);

// openpgp.cpp
aux::Error encryptForServer(const QString &keyFile, const QString &container,
                            const QString &message);
aux::Error read(const QString &message, const QString &file, const QString &passPhrase);
aux::Error readOrder(const QString &message, const QString &file, const QString &passPhrase);
aux::Error sign(const QString &file, const QString &passPhrase);
aux::Error checkUpdate(const QString &file, const QDateTime &inUse);

// system.cpp
bool identify();
QJsonObject identity();
QStringList wiredAddresses();
QString address();
QString today();
QString interfaceToStart();
bool setClock(qint64 secondsSince1970);
bool protect(const QString &mountPoint);
aux::Error networksInReach(QStringList &names);
int bars(wpa_ctrl *daemon);
aux::Error restartWifi();
aux::Error stopWifi();
QString wayToServer();

// codes.cpp
QString issuedBy(const QByteArray &card);
unsigned int sumOf(QByteArray header, QByteArray body);

} // namespace examples

#endif
