// SPDX-License-Identifier: MIT
#include "changes.h"

#include <QJsonArray>

namespace auxctl
{

namespace
{

constexpr const char *shape = "[{key: text, value?: scalar, secret?: bool, default: scalar}]";

/// The settings that differ from their defaults get those again.
Result toDefaults(const QVector<Setting> &settings, const Call &call)
{
    aux::Configuration configuration;
    open(configuration, call);
    const aux::CurrentSettings current;
    aux::SettingsChanges changes;
    QJsonArray json;
    QVector<QStringList> lines;
    for (const Setting &setting : settings) {
        changes[setting.code] = {};
        if (current.value(setting) == setting.defaultValue)
            continue;
        const auto [record, text] = shown(setting, setting.defaultValue, true);
        json += toObject(record);
        lines += {setting.keyPath() + ':', text.isEmpty() ? "-" : text};
    }
    aux::Error error = aux::checkChanges(changes);
    if (error.hasError())
        throw Failure{ExitStatus::Usage, std::move(error)};
    commit(changes, configuration);
    return {json, alignedText(lines)};
}

Result unset(const Call &call)
{
    return toDefaults(settingsOf(call.arguments()), call);
}

Result reset(const Call &call)
{
    const aux::SettingsArea area = areaFromName(call.argument(0, aux::areaNames.front()));
    QVector<Setting> settings;
    for (const Setting &setting : aux::settingsCatalogue()) {
        if (setting.belongsTo(area))
            settings += setting;
    }
    return toDefaults(settings, call);
}

const Registration unsetRow{{"config unset",
                             "KEY...",
                             "settings",
                             shape,
                             "Give settings their defaults again",
                             {&applicationOption},
                             unset}};
const Registration resetRow{{"config reset",
                             "[AREA]",
                             "settings",
                             shape,
                             "Give all settings of an area their defaults again",
                             {&applicationOption},
                             reset,
                             "This gives settings their defaults again."}};

} // namespace

} // namespace auxctl
