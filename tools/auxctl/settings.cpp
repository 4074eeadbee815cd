// SPDX-License-Identifier: MIT
#include "settings.h"

#include "nearest.h"

#include <aux/fshelper.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>

#include <algorithm>

namespace auxctl
{

namespace
{

/// The applications that have a settings file, as ORG/NAME.
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

/// Makes the settings of ORG/NAME those of this process.
bool selectApplication(const QString &application)
{
    const QStringList names = application.split('/');
    if (names.size() != 2 || names.contains(QString()) || names.contains("..") ||
        names.contains("."))
        return false;
    QCoreApplication::setOrganizationName(names[0]);
    QCoreApplication::setApplicationName(names[1]);
    return true;
}

/// Fails where there is a settings file that says nothing: its settings would look like defaults,
/// and the next write would replace it.
aux::Error checkFile(const QString &path)
{
    QFile file(path);
    if (!file.exists())
        return {};
    if (!file.open(QIODevice::ReadOnly))
        return fileProblem("open", file);
    if (!QJsonDocument::fromJson(file.readAll()).isObject())
        return problem(QStringLiteral("%1 holds no JSON object").arg(path));
    return {};
}

} // namespace

QString keyPath(const QString &key)
{
    return key.startsWith('/') ? key : '/' + key;
}

Outcome withSettings(const QStringList &keys,
                     const std::function<Outcome(const QVector<Setting> &)> &function)
{
    const QVector<Setting> &all = aux::settingsCatalogue();
    QVector<Setting> chosen;
    for (const QString &key : keys) {
        const Setting *setting = aux::settingAt(keyPath(key));
        if (setting == nullptr) {
            QStringList known;
            std::transform(all.begin(), all.end(), std::back_inserter(known),
                           [](const Setting &other) { return other.keyPath(); });
            return unknown("setting", key, known);
        }
        chosen += *setting;
    }
    return function(keys.isEmpty() ? all : chosen);
}

Outcome withConfiguration(const Invocation &invocation,
                          const std::function<Outcome(aux::Configuration &)> &function)
{
    QString application = invocation.value("app");
    if (!invocation.isSet("app")) {
        const QStringList candidates = applications();
        if (candidates.size() > 1)
            return misused(QStringLiteral("several settings files, choose one with --app: %1")
                               .arg(candidates.join(", ")));
        application = candidates.isEmpty() ? QStringLiteral("aux/terminal") : candidates.first();
    }
    if (!selectApplication(application))
        return misused(QStringLiteral("\"%1\" is no ORG/NAME").arg(application));
    aux::Configuration configuration;
    configuration.init();
    aux::Error error = checkFile(configuration.getFileName());
    return error.hasError() ? failed(std::move(error)) : function(configuration);
}

QJsonValue shownValue(const Setting &setting, const QVariant &value, bool reveal)
{
    if (setting.isSecret && !reveal && !value.toString().isEmpty())
        return QStringLiteral("********");
    return QJsonValue::fromVariant(value);
}

} // namespace auxctl
