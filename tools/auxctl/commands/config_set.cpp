// SPDX-License-Identifier: MIT
#include "changes.h"
#include "config/rules.h"

#include <QJsonArray>

#include <climits>

namespace auxctl
{

namespace
{

/// The text as the setting's type; the file holds numbers as int.
QVariant parseValue(const QString &text, const Setting &setting)
{
    const int type = setting.defaultValue.userType();
    if (type == QMetaType::Bool && (text == "true" || text == "false"))
        return text == "true";
    bool isNumber = false;
    const unsigned int number = text.toUInt(&isNumber);
    if (type == QMetaType::UInt && isNumber && number <= INT_MAX)
        return number;
    if (type == QMetaType::QString)
        return text;
    misuse(QStringLiteral("%1 takes %2, not \"%3\"")
               .arg(setting.keyPath(), aux::expectation(setting), text));
}

QStringList keysOf(const QStringList &assignments)
{
    QStringList keys;
    for (const QString &assignment : assignments) {
        if (!assignment.contains('='))
            misuse(QStringLiteral("\"%1\" is no KEY=VALUE").arg(assignment));
        keys += keyPath(assignment.section('=', 0, 0));
    }
    if (QStringList(keys).removeDuplicates() > 0)
        misuse("a setting is given twice");
    return keys;
}

Result setAll(const Call &call)
{
    const QVector<Setting> settings = settingsOf(keysOf(call.arguments()));
    aux::SettingsChanges changes;
    QJsonArray json;
    QVector<QStringList> lines;
    for (int index = 0; index < settings.size(); ++index) {
        const Setting &setting = settings[index];
        const QVariant value = parseValue(call.argument(index).section('=', 1), setting);
        const auto [record, text] = shown(setting, value, false);
        changes[setting.code] = value;
        json += toObject(record);
        lines += {setting.keyPath() + ':', text};
    }
    aux::Configuration configuration;
    open(configuration, call);
    aux::Error error = aux::checkChanges(changes);
    if (error.hasError())
        throw Failure{ExitStatus::Usage, std::move(error)};
    commit(changes, configuration);
    return {json, alignedText(lines)};
}

const Registration row{{"config set",
                        "KEY=VALUE...",
                        "settings",
                        "[{key: text, value?: scalar, secret?: bool, default: scalar}]",
                        "Set all of these settings, or none",
                        {&applicationOption, &createOption},
                        setAll}};

} // namespace

} // namespace auxctl
