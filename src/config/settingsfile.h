// SPDX-License-Identifier: MIT
#ifndef AUX_CONFIG_SETTINGSFILE_H
#define AUX_CONFIG_SETTINGSFILE_H

#include <QSettings>

#include <functional>

namespace aux
{

/// Makes the JSON file in the configuration directory what a default-constructed QSettings of the
/// process opens, and removes a lock that nobody holds.
void useSettingsFile();

/// Applies changes to the settings file. When it returns they are on the storage, unless the
/// write failed: it returns false. Blocks while another process writes.
bool changeSettings(const std::function<void(QSettings &)> &change);

} // namespace aux

#endif
