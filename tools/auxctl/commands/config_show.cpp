// SPDX-License-Identifier: MIT
#include "settings.h"

#include <QJsonArray>

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
    const aux::CurrentSettings current;
    QJsonArray json;
    QVector<QStringList> lines;
    for (const Setting &setting : settings) {
        const QVariant value = current.value(setting);
        const bool isDefault = value == setting.defaultValue;
        const auto [record, text] = shown(setting, value, call.has(revealOption));
        json += toObject(record + Record{{"isDefault", isDefault}});
        lines += {(isDefault ? "  " : "* ") + setting.keyPath(), text};
    }
    return {json, alignedText(lines)};
}

const Registration row{
    {"config show",
     "[KEY...]",
     "settings",
     "[{key: text, value?: scalar, secret?: bool, default: scalar, isDefault: bool}]",
     "Show settings; a * marks what differs from the default",
     {&applicationOption, &revealOption},
     showSettings}};

} // namespace

} // namespace auxctl
