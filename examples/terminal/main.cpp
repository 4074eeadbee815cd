// SPDX-License-Identifier: MIT
// A terminal that takes the downloads that it is given on its way to the server, and looks for a
// network to upload them: terminal [FILE...]
#include "dispatch.h"
#include "portsetting.h"
#include "wifi.h"

#include <QCoreApplication>
#include <QFile>

#include <iostream>

namespace
{

bool report(const aux::Error &error)
{
    if (!error.hasError())
        return true;
    std::cerr << error << '\n';
    if (!error.getExtraData().isEmpty())
        std::cerr << "  " << qPrintable(error.getExtraData()) << '\n';
    return false;
}

/// The server's key comes with the application, until its user has set another.
bool setUp(aux::Configuration &configuration)
{
    if (configuration.isToolsConfigured())
        return true;
    QFile key(":/server.asc");
    return key.open(QIODevice::ReadOnly) &&
           report(keepKey(configuration, key.readAll(), "the user's own"));
}

void changeSettings(aux::Configuration &configuration)
{
    for (const bool agrees : {false, true}) {
        const bool isKept = changePort(configuration, 8080, [agrees] { return agrees; });
        const QVariant port = configuration.getValue(aux::SettingsCode::NetworkDataport);
        std::cout << "port " << port.toUInt() << (isKept ? "" : ", as before") << '\n';
    }
}

bool dispatchAll(const aux::Configuration &configuration, const QStringList &downloads)
{
    bool good = true;
    for (const QString &download : downloads) {
        const auto [error, message] = dispatch(configuration, download);
        good = report(error) && good;
        if (!error.hasError())
            std::cout << "to be uploaded: " << qPrintable(message) << '\n';
    }
    return good;
}

bool showNetworks()
{
    const auto [error, networks] = networksInReach();
    for (const auto &network : networks)
        std::cout << "network " << qPrintable(network.essid) << ", quality " << network.quality
                  << '\n';
    return report(error);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName("example"); // both name the settings file
    QCoreApplication::setApplicationName("terminal");
    aux::Configuration configuration;
    configuration.init();

    QStringList downloads = QCoreApplication::arguments().mid(1);
    if (downloads.isEmpty())
        downloads += QCoreApplication::applicationFilePath(); // any file will do for a start

    bool good = setUp(configuration);
    changeSettings(configuration);
    good = dispatchAll(configuration, downloads) && good;
    good = showNetworks() && good;
    return good ? 0 : 1;
}
