// SPDX-License-Identifier: MIT
#include "config/jsonformat.h"
#include "config/rules.h"
#include "settings.h"

#include <QFile>

#include <climits>

namespace auxctl
{

namespace
{

using Values = QVector<QVariant>;

/// The text as the setting's type; the file holds numbers as int.
QVariant parseValue(const QString &text, const Setting &setting)
{
    const QVariant::Type type = setting.defaultValue.type();
    if (type == QVariant::Bool && (text == "true" || text == "false"))
        return text == "true";
    bool isNumber = false;
    const unsigned int number = text.toUInt(&isNumber);
    if (type == QVariant::UInt && isNumber && number <= INT_MAX)
        return number;
    if (type == QVariant::String)
        return text;
    misuse(QStringLiteral("%1 takes %2, not \"%3\"")
               .arg(setting.keyPath(), aux::expectation(setting), text));
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
void writeAll(aux::Configuration &configuration, const QVector<Setting> &settings,
              const Values &values)
{
    {
        QSettings file; // that of the configuration
        for (int index = 0; index < settings.size(); ++index)
            file.setValue(settings[index].keyPath(), values[index]);
    }
    if (!isOnDisk(configuration.getFileName(), settings, values)) {
        configuration.rollback(aux::SettingsArea::All); // nothing may be written later on
        fail(QStringLiteral("cannot write %1").arg(configuration.getFileName()));
    }
    configuration.commit();
}

Result setAll(const Call &call)
{
    QStringList keys;
    for (const QString &assignment : call.arguments()) {
        if (!assignment.contains('='))
            misuse(QStringLiteral("\"%1\" is no KEY=VALUE").arg(assignment));
        keys += keyPath(assignment.section('=', 0, 0));
    }
    if (QStringList(keys).removeDuplicates() > 0)
        misuse("a setting is given twice");
    const QVector<Setting> settings = settingsOf(keys);
    Values values;
    Record written;
    for (int index = 0; index < settings.size(); ++index) {
        values += parseValue(call.argument(index).section('=', 1), settings[index]);
        written += {settings[index].keyPath(), shownValue(settings[index], values[index], false)};
    }
    aux::Configuration configuration;
    open(configuration, call);
    writeAll(configuration, settings, values);
    return record(written);
}

const Registration row{{"config set",
                        "KEY=VALUE...",
                        "set",
                        "{KEY: value}",
                        "Set all of these settings, or none",
                        {&applicationOption},
                        setAll}};

} // namespace

} // namespace auxctl
