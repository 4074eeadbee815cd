// SPDX-License-Identifier: MIT
#include "config/settingschanges.h"
#include "config/rules.h"
#include "config/settingsfile.h"

namespace aux
{

namespace
{

const QVariant &orDefault(const QVariant &value, const Setting &setting)
{
    return value.isValid() ? value : setting.defaultValue;
}

Error checkChange(const Setting &setting, const QVariant &value)
{
    return orDefault(value, setting).userType() == setting.defaultValue.userType()
               ? checkValue(setting, orDefault(value, setting))
               : wrongType(setting);
}

/// Wraps around: the file may hold any number.
int successor(int number)
{
    return static_cast<int>(static_cast<unsigned int>(number) + 1U);
}

} // namespace

Error checkChanges(const SettingsChanges &changes)
{
    bool isOneTogether = false;
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        const Setting &setting = settingOf(change.key());
        Error error = checkChange(setting, *change);
        if (error.hasError())
            return error;
        isOneTogether |= isTogether(setting);
    }
    if (!isOneTogether)
        return {};
    const CurrentSettings current;
    return checkTogether([&](const Setting &setting) {
        return changes.contains(setting.code) ? orDefault(changes[setting.code], setting)
                                              : current.value(setting);
    });
}

void countCommit(QSettings::SettingsMap &settings)
{
    QVariant &count = settings[commitsKey];
    count = successor(count.toInt());
}

void applyChanges(const SettingsChanges &changes, QSettings::SettingsMap &settings)
{
    bool isChanged = false;
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        const Setting &setting = settingOf(change.key());
        const QString key = setting.storedKey();
        isChanged |= settings.value(key, setting.defaultValue) != orDefault(*change, setting);
        if (change->isValid())
            settings[key] = *change;
        else
            settings.remove(key);
    }
    if (isChanged)
        countCommit(settings);
}

Reason commitChanges(const SettingsChanges &changes)
{
    return changeSettings(
        [&](QSettings::SettingsMap &settings) { applyChanges(changes, settings); },
        WhenNotWritten::Forget);
}

} // namespace aux
