// SPDX-License-Identifier: MIT
#include "aux/configuration.h"
#include "config/catalogue.h"
#include "config/fairmutex.h"
#include "config/settingschanges.h"
#include "config/settingsfile.h"

#include <mutex>

namespace aux
{

namespace
{

template <typename Visit>
void forEachSetting(SettingsArea area, const Visit &visit)
{
    for (const Setting &setting : settingsCatalogue()) {
        if (setting.belongsTo(area))
            visit(setting);
    }
}

} // namespace

int Configuration::getChangeCounter() const
{
    const std::lock_guard locker(*m_mutex);
    return _isInitialized("getChangeCounter")
               ? CurrentSettings().value(QLatin1Char('/') + commitsKey, 0U).toInt()
               : 0;
}

void Configuration::snapshot()
{
    const std::lock_guard locker(*m_mutex);
    if (_isInitialized("snapshot"))
        _readSnapshot();
}

void Configuration::rollback(SettingsArea area)
{
    const std::lock_guard locker(*m_mutex);
    if (_isInitialized("rollback"))
        _writeSnapshot(area);
}

ChangeState Configuration::changed(SettingsArea area) const
{
    const std::lock_guard locker(*m_mutex);
    return _changed(area);
}

void Configuration::commit()
{
    const std::lock_guard locker(*m_mutex);
    if (!_isInitialized("commit") || !_changed(SettingsArea::All).anyChanged ||
        !CurrentSettings().isComplete()) // nor is the number of commits known
        return;
    static_cast<void>(changeSettings(countCommit));
    _readSnapshot();
}

void Configuration::_readSnapshot()
{
    const CurrentSettings settings;
    m_snapshot.clear();
    if (!settings.isComplete()) // a rollback must not put defaults in place of what is not known
        return;
    forEachSetting(SettingsArea::All, [&](const Setting &setting) {
        m_snapshot.insert(setting.code, settings.value(setting));
    });
}

void Configuration::_writeSnapshot(SettingsArea area) const
{
    static_cast<void>(changeSettings([&](QSettings::SettingsMap &settings) {
        forEachSetting(area, [&](const Setting &setting) {
            if (m_snapshot.contains(setting.code))
                settings[setting.storedKey()] = m_snapshot.value(setting.code);
        });
    }));
}

ChangeState Configuration::_changed(SettingsArea area) const
{
    ChangeState state;
    if (!_isInitialized("_changed"))
        return state;
    const CurrentSettings settings;
    forEachSetting(area, [&](const Setting &setting) {
        if (settings.value(setting) != m_snapshot.value(setting.code, setting.defaultValue)) {
            state.anyChanged = true;
            state.flaggedChanged |= setting.flag;
        }
    });
    return state;
}

} // namespace aux
