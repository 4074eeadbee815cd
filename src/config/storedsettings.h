// SPDX-License-Identifier: MIT
#ifndef AUX_CONFIG_STOREDSETTINGS_H
#define AUX_CONFIG_STOREDSETTINGS_H

#include "error/reason.h"

#include <QSettings>

namespace aux
{

/// Reads a file whole, nothing where there is none. What is no regular file is refused.
Reason readWhole(const QString &path, QByteArray &text);

/// Reads a settings file to replace it: one that holds text, but no JSON object, is kept as
/// "<file>.bad" first. Where there is a reason it must not be replaced.
Reason readToReplace(const QString &path, QSettings::SettingsMap &settings);

/// Replaces a settings file in a directory that is there. Its text and its name are fsynced.
Reason replaceSettings(const QString &path, const QSettings::SettingsMap &settings);

} // namespace aux

#endif
