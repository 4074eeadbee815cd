// SPDX-License-Identifier: MIT
#include "aux/configuration.h"
#include "aux/datahelper.h"
#include "config/catalogue.h"
#include "error/failure.h"

#include <QFile>
#include <QSettings>

#include <algorithm>
#include <array>

namespace aux
{

namespace
{

constexpr int pinHashLength = 64;
constexpr int minimumKeyLength = 64;
/// Where the terminal serves its own pages.
constexpr int internalCgiPort = 9000;

constexpr std::array operatingModes{SettingsCode::DeviceModeUsb, SettingsCode::DeviceModeSerial,
                                    SettingsCode::DeviceModeNetwork};

Error invalidContent(QString message)
{
    return failure(ErrorId::InvalidContent, std::move(message));
}

/// The setting's value, converted as QSettings does: the text "9000" is a number, "true" a bool.
QVariant read(const QSettings &settings, SettingsCode code, const QVariant &fallback)
{
    return settings.value(settingsCatalogue().value(code).keyPath(), fallback);
}

QString readText(const QSettings &settings, SettingsCode code)
{
    return read(settings, code, QString()).toString();
}

Error checkCompleteness(const QSettings &settings)
{
    for (const _SetMeta &meta : settingsCatalogue()) {
        if (!settings.contains(meta.keyPath()))
            return invalidContent(QStringLiteral("Invalid config file. Missing ") + meta.keyPath());
    }
    return {};
}

Error checkPinHash(const QSettings &settings)
{
    const int length = readText(settings, SettingsCode::DevicePin).size();
    if (length != 0 && length != pinHashLength)
        return invalidContent(QStringLiteral("Invalid pin hash length: ") +
                              QString::number(length));
    return {};
}

Error checkDataPort(const QSettings &settings)
{
    const int port = read(settings, SettingsCode::NetworkDataport, defaultDataPort).toInt();
    if (port == internalCgiPort)
        return invalidContent(QStringLiteral("Cannot use internal CGI port as dataport: ") +
                              QString::number(port));
    return {};
}

Error checkGpgKey(const QSettings &settings)
{
    const int length = readText(settings, SettingsCode::CryptoGpgkey).size();
    if (length != 0 && length < minimumKeyLength)
        return invalidContent(QStringLiteral("Invalid config file. GPG Key invalid size"));
    return {};
}

Error checkVendors(const QSettings &settings)
{
    QStringList ignored;
    return DataHelper::vIdpIdListFromString(readText(settings, SettingsCode::CryptoVendors),
                                            ignored);
}

Error checkOperatingModes(const QSettings &settings)
{
    const auto isOn = [&](SettingsCode mode) { return read(settings, mode, false).toBool(); };
    if (std::none_of(operatingModes.begin(), operatingModes.end(), isOn))
        return invalidContent(
            QStringLiteral("All operating modes disabled. At least one mode must be enabled."));
    return {};
}

using Check = Error (*)(const QSettings &);

constexpr std::array<Check, 6> checks{checkCompleteness, checkPinHash, checkDataPort,
                                      checkGpgKey,       checkVendors, checkOperatingModes};

} // namespace

Error Configuration::validateConfigFile(const QString &fileName)
{
    if (!QFile::exists(fileName))
        return failure(ErrorId::General, QStringLiteral("Config file does not exist"));
    const QSettings settings(fileName, QSettings::defaultFormat());
    Error error;
    for (const Check check : checks) {
        error = check(settings);
        if (error.hasError())
            break;
    }
    return error;
}

} // namespace aux
