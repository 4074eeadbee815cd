// SPDX-License-Identifier: MIT
#ifndef AUX_CONFIG_SETTINGSCHANGES_H
#define AUX_CONFIG_SETTINGSCHANGES_H

#include "config/catalogue.h"
#include "error/reason.h"

#include <QMap>
#include <QSettings>

namespace aux
{

/// Where the number of commits is.
inline const QString commitsKey = QStringLiteral("config_changes");

/// New values of settings; an invalid one takes the setting out of the file, so that its default
/// holds again.
using SettingsChanges = QMap<SettingsCode, QVariant>;

/// Fails with 10002 where a new value is not of the setting's type or breaks its rule, or where
/// the settings that are looked at together would break theirs.
Error checkChanges(const SettingsChanges &changes);

/// Writes all of them at once and counts one commit, where any value really changes. Whenever the
/// process is killed or the power fails, the file holds either all of it or nothing. Where there is
/// a reason nothing was written, nor will it be later.
Reason commitChanges(const SettingsChanges &changes);

/// Changes settings whose keys have no leading "/", as commitChanges does.
void applyChanges(const SettingsChanges &changes, QSettings::SettingsMap &settings);

/// Counts one more commit.
void countCommit(QSettings::SettingsMap &settings);

} // namespace aux

#endif
