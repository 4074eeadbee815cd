// SPDX-License-Identifier: MIT
#include "settings.h"

namespace auxctl
{

namespace
{

constexpr Switch revealOption{"reveal", "Show secrets too"};

Result showSettings(const Call &call)
{
    const QVector<Setting> settings = settingsOf(call.arguments());
    aux::Configuration configuration;
    open(configuration, call);
    QVector<Record> records;
    QVector<QStringList> lines;
    for (const Setting &setting : settings) {
        const QVariant value = configuration.getValue(setting.code);
        const bool isDefault = value == setting.defaultValue;
        const QJsonValue shown = shownValue(setting, value, call.has(revealOption));
        records += {{"key", setting.keyPath()},
                    {"value", shown},
                    {"default", QJsonValue::fromVariant(setting.defaultValue)},
                    {"isDefault", isDefault}};
        lines += {(isDefault ? "  " : "* ") + setting.keyPath(), valueText(shown)};
    }
    return {table(records).json, alignedText(lines)};
}

const Registration row{{"config show",
                        "[KEY...]",
                        "settings",
                        "[{key, value, default, isDefault}]",
                        "Show settings; a * marks what differs from the default",
                        {&applicationOption, &revealOption},
                        showSettings}};

} // namespace

} // namespace auxctl
