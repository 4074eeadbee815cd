// SPDX-License-Identifier: MIT
#include "settings.h"

#include <QJsonArray>

namespace auxctl
{

namespace
{

/// A snapshot lives only in the process that took it, so this compares with the defaults.
Result showChanged(const Call &call)
{
    const aux::SettingsArea area = areaFromName(call.argument(0, aux::areaNames.front()));
    aux::Configuration configuration;
    open(configuration, call);
    const aux::CurrentSettings current;
    QJsonArray json;
    QVector<QStringList> lines{{"KEY", "VALUE", "DEFAULT"}};
    for (const Setting &setting : aux::settingsCatalogue()) {
        const QVariant value = current.value(setting);
        if (!setting.belongsTo(area) || value == setting.defaultValue)
            continue;
        const auto [record, text] = shown(setting, value, false);
        json += toObject(record);
        lines += {setting.keyPath(), text, setting.defaultValue.toString()};
    }
    return answered(!json.isEmpty(), {json, json.isEmpty() ? QString() : alignedText(lines)});
}

const Registration row{{"config changed",
                        "[AREA]",
                        "changed",
                        "[{key: text, value?: scalar, secret?: bool, default: scalar}]",
                        "Show settings that differ from their defaults",
                        {&applicationOption},
                        showChanged}};

} // namespace

} // namespace auxctl
