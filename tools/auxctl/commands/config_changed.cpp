// SPDX-License-Identifier: MIT
#include "commands.h"
#include "nearest.h"
#include "settings.h"

namespace auxctl
{

/// A snapshot lives only in the process that took it, so this compares with the defaults.
Outcome configChanged(const Invocation &invocation)
{
    const QStringList areaNames(aux::areaNames.begin(), aux::areaNames.end());
    const QString name = invocation.argument(0, areaNames.first());
    if (!areaNames.contains(name))
        return unknown("area", name, areaNames);
    const auto area = static_cast<aux::SettingsArea>(areaNames.indexOf(name));
    return withConfiguration(invocation, [&](aux::Configuration &configuration) {
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
    });
}

} // namespace auxctl
