// SPDX-License-Identifier: MIT
#include "commands.h"
#include "nearest.h"
#include "settings.h"

namespace auxctl
{

namespace
{

const QStringList areaNames{"all", "network", "time", "screensaver", "mode"};

} // namespace

/// A snapshot lives only in the process that took it, so this compares with the defaults.
Outcome configChanged(const Invocation &invocation)
{
    const QString name = invocation.argument(0, areaNames.first());
    if (!areaNames.contains(name))
        return unknown("area", name, areaNames);
    const auto area = static_cast<aux::SettingsArea>(areaNames.indexOf(name));
    return withConfiguration(invocation, [&](aux::Configuration &configuration) {
        QVector<Record> changes;
        for (const Setting &setting : allSettings()) {
            const QVariant value = configuration.getValue(setting.code);
            if (!setting.meta.areas.contains(area) || value == setting.meta.defaultValue)
                continue;
            changes += {{"key", setting.key()},
                        {"value", shownValue(setting, value, false)},
                        {"default", QJsonValue::fromVariant(setting.meta.defaultValue)}};
        }
        return answered(!changes.isEmpty(), table(changes));
    });
}

} // namespace auxctl
