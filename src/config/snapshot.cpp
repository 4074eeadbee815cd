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
    forEachSetting(SettingsArea::All, [&](const Setting &setting) {
        m_snapshot.insert(setting.code, settings.value(setting.keyPath(), setting.defaultValue));
    });
}

void Configuration::_writeSnapshot(SettingsArea area) const
{
    changeSettings([&](QSettings &file) {
        forEachSetting(area, [&](const Setting &setting) {
            file.setValue(setting.keyPath(), m_snapshot.value(setting.code));
        });
    });
}

ChangeState Configuration::_changed(SettingsArea area) const
{
    ChangeState state;
    if (!_isInitialized("_changed"))
        return state;
    const QSettings settings;
    forEachSetting(area, [&](const Setting &setting) {
        if (settings.value(setting.keyPath(), setting.defaultValue) !=
            m_snapshot.value(setting.code)) {
            state.anyChanged = true;
            state.flaggedChanged |= setting.flag;
        }
    });
    return state;
}

} // namespace aux
