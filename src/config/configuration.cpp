// SPDX-License-Identifier: MIT
#include "aux/configuration.h"
#include "aux/datahelper.h"
#include "config/catalogue.h"
#include "config/settingsfile.h"
#include "error/debugline.h"

#include <QMutexLocker>
#include <QSettings>

namespace aux
{

namespace
{

const QString versionKey = QStringLiteral("version");
const QString empty = QStringLiteral("");

} // namespace

Configuration::Configuration() = default;
Configuration::~Configuration() = default;

bool Configuration::_isInitialized(const char *operation) const
{
    if (!m_initialized)
        debugLine(operation, ": not initialized");
    return m_initialized;
}

void Configuration::init()
{
    const QMutexLocker locker(&m_mutex);
    if (m_initialized) {
        debugLine("init", ": already initialized");
        return;
    }
    useSettingsFile();
    _readSnapshot();
    m_initialized = true;
}

QVariant Configuration::getValue(SettingsCode code) const
{
    const QMutexLocker locker(&m_mutex);
    if (!_isInitialized("getValue"))
        return {};
    const Setting &setting = settingOf(code);
    return QSettings().value(setting.keyPath(), setting.defaultValue);
}

void Configuration::setValue(SettingsCode code, const QVariant &value)
{
    const QMutexLocker locker(&m_mutex);
    if (!_isInitialized("setValue"))
        return;
    const Setting &setting = settingOf(code);
    if (value.type() != setting.defaultValue.type()) {
        debugLine("setValue", ": type mismatch");
        return;
    }
    changeSettings([&](QSettings &settings) { settings.setValue(setting.keyPath(), value); });
}

QString Configuration::getFileName() const
{
    const QMutexLocker locker(&m_mutex);
    return _isInitialized("getFileName") ? QSettings().fileName() : QString();
}

QString Configuration::getVersion() const
{
    const QMutexLocker locker(&m_mutex);
    return QSettings().value(versionKey, empty).toString();
}

void Configuration::sync()
{
    const QMutexLocker locker(&m_mutex);
    changeSettings([](QSettings &) {});
}

bool Configuration::isToolsConfigured() const
{
    return !getValue(SettingsCode::CryptoPassphrase).toString().isEmpty();
}

QStringList Configuration::getCryptoVidPidList() const
{
    const QMutexLocker locker(&m_mutex);
    const QString key = settingOf(SettingsCode::CryptoVendors).keyPath();
    QStringList list;
    const Error error =
        DataHelper::vIdpIdListFromString(QSettings().value(key, empty).toString(), list);
    if (error.hasError())
        debugLine("getCryptoVidPidList", ": invalid vendor:product id list");
    return list;
}

} // namespace aux
