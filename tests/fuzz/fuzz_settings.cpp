// SPDX-License-Identifier: MIT
// Reads whatever may stand in the settings file, and writes it again. What was written can be read,
// and every setting is still there but for those that cannot be: one that is also the beginning of
// others, is too deep, begins with "/" or is no Unicode.
#include "config/jsonformat.h"
#include "require.h"

#include <QBuffer>
#include <QJsonDocument>

#include <sanitizer/lsan_interface.h>

using aux::json::readSettings;
using Settings = QSettings::SettingsMap;

namespace
{

Settings settingsIn(QByteArray text)
{
    QBuffer device(&text);
    Settings settings;
    const __lsan::ScopedDisabler lost; // by Qt, an object whose name comes twice
    require(device.open(QIODevice::ReadOnly) && readSettings(device, settings));
    return settings;
}

bool canBeKept(const QString &key, const Settings &settings)
{
    const QString below = key + '/';
    const auto next = settings.lowerBound(below);
    return !key.startsWith('/') && key.isValidUtf16() && key.count('/') < aux::json::maximumDepth &&
           (next == settings.end() || !next.key().startsWith(below)) &&
           settings[key].toString().isValidUtf16();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QByteArray text(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const Settings before = settingsIn(text);
    const QByteArray written = aux::json::toText(before);
    require(QJsonDocument::fromJson(written).isObject());
    const Settings after = settingsIn(written);
    for (auto setting = before.begin(); setting != before.end(); ++setting)
        require(!canBeKept(setting.key(), before) || after.value(setting.key()) == setting.value());
    return 0;
}
