// SPDX-License-Identifier: MIT
#include "settings.h"

#include <aux/fshelper.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <algorithm>
#include <cerrno>

#include <unistd.h>

namespace auxctl
{

namespace
{

/// The one of --app, else the only one there is, else aux/terminal.
QString applicationOf(const Call &call)
{
    if (const auto application = call.value(applicationOption))
        return *application;
    const QStringList candidates = applications();
    if (candidates.size() > 1)
        misuse(QStringLiteral("several settings files, choose one with --app: %1")
                   .arg(candidates.join(", ")));
    return candidates.isEmpty() ? QStringLiteral("aux/terminal") : candidates.first();
}

/// Makes the settings of ORG/NAME those of this process.
void selectApplication(const QString &application)
{
    const QStringList names = application.split('/');
    if (names.size() != 2 || names.contains(QString()) || names.contains("..") ||
        names.contains("."))
        misuse(QStringLiteral("\"%1\" is no ORG/NAME").arg(application));
    QCoreApplication::setOrganizationName(names[0]);
    QCoreApplication::setApplicationName(names[1]);
}

/// Fails where there is a settings file that says nothing: its settings would look like defaults,
/// and the next write would replace it.
void checkFile(const QString &path, bool mayBeMissing)
{
    QFile file(path);
    // One in a directory that may not be searched seems to be missing.
    const bool isMissing = access(QFile::encodeName(path).constData(), F_OK) != 0 &&
                           (errno == ENOENT || errno == ENOTDIR);
    if (isMissing && !mayBeMissing)
        fail(QStringLiteral("%1 does not exist, config set --create makes it").arg(path));
    if (isMissing)
        return;
    if (!file.open(QIODevice::ReadOnly))
        failOn("open", file);
    if (!QJsonDocument::fromJson(file.readAll()).isObject())
        fail(QStringLiteral("%1 holds no JSON object").arg(path));
}

} // namespace

constexpr ValueOption<QString> applicationOption{
    "app", "ORG/NAME", "The application whose settings are meant", anyText};
constexpr Switch createOption{"create", "Make the settings file of --app where there is none"};

QStringList applications()
{
    const QDir root(aux::FsHelper::dirLocationToFullPath(aux::DirLocation::Config));
    QStringList names;
    for (const QString &organisation : root.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        for (const QFileInfo &file :
             QDir(root.filePath(organisation)).entryInfoList({"*.JSON"}, QDir::Files))
            names += organisation + '/' + file.completeBaseName();
    }
    return names;
}

QString keyPath(const QString &key)
{
    return key.startsWith('/') ? key : '/' + key;
}

QVector<Setting> settingsOf(const QStringList &keys)
{
    const QVector<Setting> &all = aux::settingsCatalogue();
    QVector<Setting> chosen;
    for (const QString &key : keys) {
        const Setting *setting = aux::settingAt(keyPath(key));
        if (setting == nullptr) {
            QStringList known;
            std::transform(all.begin(), all.end(), std::back_inserter(known),
                           [](const Setting &other) { return other.keyPath(); });
            misuseUnknown("setting", key, known);
        }
        chosen += *setting;
    }
    return keys.isEmpty() ? all : chosen;
}

QStringList areaNames()
{
    return QStringList(aux::areaNames.begin(), aux::areaNames.end());
}

aux::SettingsArea areaFromName(const QString &name)
{
    const QStringList names = areaNames();
    if (!names.contains(name))
        misuseUnknown("area", name, names);
    return static_cast<aux::SettingsArea>(names.indexOf(name));
}

void open(aux::Configuration &configuration, const Call &call)
{
    selectApplication(applicationOf(call));
    configuration.init();
    checkFile(configuration.getFileName(), !call.has(applicationOption) || call.has(createOption));
}

ShownSetting shown(const Setting &setting, const QVariant &value, bool reveal)
{
    const bool isHidden = setting.isSecret && !reveal && !value.toString().isEmpty();
    Record record{{"key", setting.keyPath()}};
    if (isHidden)
        record += {"secret", true};
    else
        record += {"value", QJsonValue::fromVariant(value)};
    record += {"default", QJsonValue::fromVariant(setting.defaultValue)};
    return {record,
            isHidden ? QStringLiteral("********") : valueText(QJsonValue::fromVariant(value))};
}

} // namespace auxctl
