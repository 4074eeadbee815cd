// SPDX-License-Identifier: MIT
#include "commands.h"
#include "config/jsonformat.h"
#include "config/rules.h"
#include "settings.h"

#include <QFile>

#include <climits>
#include <optional>

namespace auxctl
{

namespace
{

using Values = QVector<QVariant>;

/// The text as the setting's type; the file holds numbers as int.
std::optional<QVariant> parseValue(const QString &text, QVariant::Type type)
{
    if (type == QVariant::Bool) {
        if (text != "true" && text != "false")
            return std::nullopt;
        return text == "true";
    }
    if (type == QVariant::UInt) {
        bool isNumber = false;
        const unsigned int number = text.toUInt(&isNumber);
        return isNumber && number <= INT_MAX ? std::optional<QVariant>(number) : std::nullopt;
    }
    return text;
}

/// What the file on the disk says, past everything that this process keeps in memory.
bool isOnDisk(const QString &fileName, const QVector<Setting> &settings, const Values &values)
{
    QFile file(fileName);
    QSettings::SettingsMap map;
    if (!file.open(QIODevice::ReadOnly) || !aux::json::readSettings(file, map))
        return false;
    for (int index = 0; index < settings.size(); ++index) {
        if (map.value(settings[index].keyPath().mid(1)) != values[index])
            return false;
    }
    return true;
}

/// The file is written once for all of them.
Outcome writeAll(aux::Configuration &configuration, const QVector<Setting> &settings,
                 const Values &values)
{
    Record written;
    {
        QSettings file; // that of the configuration
        for (int index = 0; index < settings.size(); ++index) {
            file.setValue(settings[index].keyPath(), values[index]);
            written +=
                {settings[index].keyPath(), shownValue(settings[index], values[index], false)};
        }
    }
    if (!isOnDisk(configuration.getFileName(), settings, values)) {
        configuration.rollback(aux::SettingsArea::All); // nothing may be written later on
        return failed(QStringLiteral("cannot write %1").arg(configuration.getFileName()));
    }
    configuration.commit();
    return record(written);
}

} // namespace

Outcome configSet(const Invocation &invocation)
{
    QStringList keys;
    QStringList texts;
    for (const QString &assignment : invocation.arguments) {
        if (!assignment.contains('='))
            return misused(QStringLiteral("\"%1\" is no KEY=VALUE").arg(assignment));
        keys += keyPath(assignment.section('=', 0, 0));
        texts += assignment.section('=', 1);
    }
    if (keys.removeDuplicates() > 0)
        return misused("a setting is given twice");
    return withSettings(keys, [&](const QVector<Setting> &settings) {
        Values values;
        for (int index = 0; index < settings.size(); ++index) {
            const QVariant::Type type = settings[index].defaultValue.type();
            const auto value = parseValue(texts[index], type);
            if (!value)
                return misused(QStringLiteral("%1 takes %2, not \"%3\"")
                                   .arg(settings[index].keyPath(),
                                        aux::expectation(settings[index]), texts[index]));
            values += *value;
        }
        return withConfiguration(invocation, [&](aux::Configuration &configuration) {
            return writeAll(configuration, settings, values);
        });
    });
}

} // namespace auxctl
