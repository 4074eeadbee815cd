// SPDX-License-Identifier: MIT
#include "aux/configuration.h"
#include "config/catalogue.h"
#include "config/settingsfile.h"

#include <QMutexLocker>

namespace aux
{

namespace
{

const QString counterKey = QStringLiteral("config_changes");

int readCounter(const QSettings &settings)
{
    return settings.value(counterKey, 0U).toInt();
}

/// Wraps around: the file may hold any number.
int successor(int number)
{
    return static_cast<int>(static_cast<unsigned int>(number) + 1U);
}

/// Calls `visit` with the code and the meta data of each setting of an area.
template <typename Visit>
void forEachSetting(SettingsArea area, const Visit &visit)
{
    const auto &catalogue = settingsCatalogue();
    for (auto setting = catalogue.begin(); setting != catalogue.end(); ++setting) {
        if (setting->areas.contains(area))
            visit(setting.key(), *setting);
    }
}

} // namespace

int Configuration::getChangeCounter() const
{
    const QMutexLocker locker(&m_mutex);
    return _isInitialized("getChangeCounter") ? readCounter(QSettings()) : 0;
}

void Configuration::snapshot()
{
    const QMutexLocker locker(&m_mutex);
    if (_isInitialized("snapshot"))
        _readSnapshot();
}

void Configuration::rollback(SettingsArea area)
{
    const QMutexLocker locker(&m_mutex);
    if (_isInitialized("rollback"))
        _writeSnapshot(area);
}

ChangeState Configuration::changed(SettingsArea area) const
{
    const QMutexLocker locker(&m_mutex);
    return _changed(area);
}

void Configuration::commit()
{
    const QMutexLocker locker(&m_mutex);
    if (!_isInitialized("commit") || !_changed(SettingsArea::All).anyChanged)
        return;
    changeSettings([](QSettings &settings) {
        settings.setValue(counterKey, successor(readCounter(settings)));
    });
    _readSnapshot();
}

void Configuration::_readSnapshot()
{
    const QSettings settings;
    m_snapshot.clear();
    forEachSetting(SettingsArea::All, [&](SettingsCode code, const _SetMeta &meta) {
        m_snapshot.insert(code, settings.value(meta.keyPath(), meta.defaultValue));
    });
}

void Configuration::_writeSnapshot(SettingsArea area) const
{
    changeSettings([&](QSettings &settings) {
        forEachSetting(area, [&](SettingsCode code, const _SetMeta &meta) {
            settings.setValue(meta.keyPath(), m_snapshot.value(code));
        });
    });
}

ChangeState Configuration::_changed(SettingsArea area) const
{
    ChangeState state;
    if (!_isInitialized("_changed"))
        return state;
    const QSettings settings;
    forEachSetting(area, [&](SettingsCode code, const _SetMeta &meta) {
        if (settings.value(meta.keyPath(), meta.defaultValue) != m_snapshot.value(code)) {
            state.anyChanged = true;
            state.flaggedChanged |= meta.flag;
        }
    });
    return state;
}

} // namespace aux
