// SPDX-License-Identifier: MIT
// Does one operation on the settings: settings ORGANISATION set|commit|rollback|apply VALUE
//
// The value is that of one setting, in the case of "apply" in a complete file. Says "begin" on
// stderr between the preparation and the operation, and ends at once after it.
#include <aux/configuration.h>

#include <QCoreApplication>

#include <cstdlib>

#include <unistd.h>

int main(int argc, char *argv[])
{
    if (argc != 4)
        qFatal("usage: settings ORGANISATION set|commit|rollback|apply VALUE");
    QCoreApplication::setOrganizationName(argv[1]);
    QCoreApplication::setApplicationName("terminal");
    const QByteArray operation = argv[2];
    const QVariant value = QString(argv[3]);

    aux::Configuration configuration;
    configuration.init();
    if (operation == "commit" || operation == "rollback")
        configuration.setValue(aux::SettingsCode::DeviceLang, value);
    const QString candidate = "/data/" + QCoreApplication::organizationName() + ".json";
    if (operation == "apply") {
        const QVariant before = configuration.getValue(aux::SettingsCode::DeviceLang);
        configuration.setValue(aux::SettingsCode::DeviceLang, value);
        if (configuration.writeConfigFile(candidate).hasError())
            return EXIT_FAILURE;
        configuration.setValue(aux::SettingsCode::DeviceLang, before);
    }
    if (::write(STDERR_FILENO, "begin\n", 6) != 6)
        return EXIT_FAILURE;
    if (operation == "set")
        configuration.setValue(aux::SettingsCode::DeviceLang, value);
    else if (operation == "commit")
        configuration.commit();
    else if (operation == "apply")
        static_cast<void>(configuration.applyConfigFile(candidate));
    else
        configuration.rollback(aux::SettingsArea::All);
    ::_exit(EXIT_SUCCESS);
}
