// SPDX-License-Identifier: MIT
#include "commands.h"
#include "settings.h"

namespace auxctl
{

Outcome configShow(const Invocation &invocation)
{
    return withSettings(invocation.arguments, [&](const QVector<Setting> &settings) {
        return withConfiguration(invocation, [&](aux::Configuration &configuration) {
            QVector<Record> records;
            QVector<QStringList> lines;
            for (const Setting &setting : settings) {
                const QVariant value = configuration.getValue(setting.code);
                const bool isDefault = value == setting.defaultValue;
                const QJsonValue shown = shownValue(setting, value, invocation.isSet("reveal"));
                records += {{"key", setting.keyPath()},
                            {"value", shown},
                            {"default", QJsonValue::fromVariant(setting.defaultValue)},
                            {"isDefault", isDefault}};
                lines += {(isDefault ? "  " : "* ") + setting.keyPath(), valueText(shown)};
            }
            Outcome outcome = table(records);
            outcome.text = alignedText(lines);
            return outcome;
        });
    });
}

} // namespace auxctl
