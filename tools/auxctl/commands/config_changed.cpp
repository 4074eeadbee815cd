// SPDX-License-Identifier: MIT
#include "settings.h"

namespace auxctl
{

namespace
{

aux::SettingsArea areaFromName(const QString &name)
{
    const QStringList names(aux::areaNames.begin(), aux::areaNames.end());
    if (!names.contains(name))
        misuseUnknown("area", name, names);
    return static_cast<aux::SettingsArea>(names.indexOf(name));
}

/// A snapshot lives only in the process that took it, so this compares with the defaults.
Result showChanged(const Call &call)
{
    const aux::SettingsArea area = areaFromName(call.argument(0, aux::areaNames.front()));
    aux::Configuration configuration;
    open(configuration, call);
    QVector<Record> changes;
    for (const Setting &setting : aux::settingsCatalogue()) {
        const QVariant value = configuration.getValue(setting.code);
        if (!setting.belongsTo(area) || value == setting.defaultValue)
            continue;
        changes += {{"key", setting.keyPath()},
                    {"value", shownValue(setting, value, false)},
                    {"default", QJsonValue::fromVariant(setting.defaultValue)}};
    }
    return answered(!changes.isEmpty(), table(changes));
}

const Registration row{{"config changed",
                        "[AREA]",
                        "changed",
                        "[{key, value, default}]",
                        "Show settings that differ from their defaults",
                        {&applicationOption},
                        showChanged}};

} // namespace

} // namespace auxctl
