// SPDX-License-Identifier: MIT
#include "aux/configuration.h"
#include "config/fairmutex.h"
#include "config/jsonformat.h"
#include "config/rules.h"
#include "config/settingschanges.h"
#include "config/settingsfile.h"
#include "config/validation.h"
#include "fs/newfile.h"

#include <mutex>

namespace aux
{

namespace
{

const Reason notInitialized = QStringLiteral("not initialized");

/// All settings, in the shape of the settings file.
QByteArray completeText(const CurrentSettings &current)
{
    QSettings::SettingsMap settings;
    for (const Setting &setting : settingsCatalogue())
        settings[setting.storedKey()] = ofItsType(current.value(setting), setting);
    return json::toText(settings);
}

Reason writeNewFile(const QString &fileName)
{
    const CurrentSettings current;
    if (!current.isComplete())
        return current.reason();
    NewFile file(fileName);
    if (!file.open())
        return reason::cannotCreate.because(file.cause());
    return file.write(completeText(current)) && file.commit()
               ? Reason()
               : reason::cannotWrite.because(file.cause());
}

SettingsChanges changesTo(const Candidate &candidate)
{
    SettingsChanges changes;
    for (const Setting &setting : settingsCatalogue())
        changes[setting.code] = ofItsType(candidate.value(setting), setting);
    return changes;
}

SettingsChanges changesToDefaults(SettingsArea area)
{
    SettingsChanges changes;
    for (const Setting &setting : settingsCatalogue()) {
        if (setting.belongsTo(area))
            changes[setting.code] = {};
    }
    return changes;
}

} // namespace

Error Configuration::writeConfigFile(const QString &fileName) const
{
    constexpr const char *operation = "writeConfigFile";
    const std::lock_guard locker(*m_mutex);
    return outcome(operation, _isInitialized(operation) ? writeNewFile(fileName) : notInitialized);
}

Error Configuration::applyConfigFile(const QString &fileName)
{
    constexpr const char *operation = "applyConfigFile";
    const std::lock_guard locker(*m_mutex);
    if (!_isInitialized(operation))
        return refuse(operation, notInitialized);
    Candidate candidate;
    Error faults = readFaultless(fileName, candidate);
    return faults.hasError() ? faults : _commitChanges(operation, changesTo(candidate));
}

Error Configuration::resetToDefaults(SettingsArea area)
{
    constexpr const char *operation = "resetToDefaults";
    const std::lock_guard locker(*m_mutex);
    return _isInitialized(operation) ? _commitChanges(operation, changesToDefaults(area))
                                     : refuse(operation, notInitialized);
}

Error Configuration::_commitChanges(const char *operation,
                                    const QMap<SettingsCode, QVariant> &changes)
{
    const Reason reason = commitChanges(changes);
    if (reason.isNone())
        _readSnapshot();
    return outcome(operation, reason);
}

} // namespace aux
