// SPDX-License-Identifier: MIT
#include "aux/configuration.h"
#include "aux/datahelper.h"
#include "config/catalogue.h"
#include "config/fairmutex.h"
#include "config/settingsfile.h"
#include "error/debugline.h"

#include <mutex>

namespace aux
{

namespace
{

const QString versionKey = QStringLiteral("/version");
const QString noText = QStringLiteral("");

} // namespace

Configuration::Configuration() : m_mutex(std::make_unique<FairMutex>()) {}
Configuration::~Configuration() = default;

bool Configuration::_isInitialized(const char *operation) const
{
    if (!m_initialized)
        debugLine(operation, ": not initialized");
    return m_initialized;
}

void Configuration::init()
{
    const std::lock_guard locker(*m_mutex);
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
    const std::lock_guard locker(*m_mutex);
    if (!_isInitialized("getValue"))
        return {};
    return CurrentSettings().value(settingOf(code));
}

void Configuration::setValue(SettingsCode code, const QVariant &value)
{
    const std::lock_guard locker(*m_mutex);
    if (!_isInitialized("setValue"))
        return;
    const Setting &setting = settingOf(code);
    if (value.userType() != setting.defaultValue.userType()) {
        debugLine("setValue", ": type mismatch");
        return;
    }
    if (setting.key == nullptr) {
        QSettings().setValue({}, value); // which warns of the empty key
        return;
    }
    static_cast<void>(changeSettings(
        [&](QSettings::SettingsMap &settings) { settings[setting.storedKey()] = value; }));
}

QString Configuration::getFileName() const
{
    const std::lock_guard locker(*m_mutex);
    return _isInitialized("getFileName") ? settingsFileName() : QString();
}

QString Configuration::getVersion() const
{
    const std::lock_guard locker(*m_mutex);
    return CurrentSettings().value(versionKey, noText).toString();
}

void Configuration::sync()
{
    const std::lock_guard locker(*m_mutex);
    syncSettings();
}

bool Configuration::isToolsConfigured() const
{
    return !getValue(SettingsCode::CryptoPassphrase).toString().isEmpty();
}

QStringList Configuration::getCryptoVidPidList() const
{
    const std::lock_guard locker(*m_mutex);
    const QString key = settingOf(SettingsCode::CryptoVendors).keyPath();
    QStringList list;
    const Error error =
        DataHelper::vIdpIdListFromString(CurrentSettings().value(key, noText).toString(), list);
    if (error.hasError())
        debugLine("getCryptoVidPidList", ": invalid vendor:product id list");
    return list;
}

} // namespace aux
