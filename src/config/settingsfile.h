// SPDX-License-Identifier: MIT
#ifndef AUX_CONFIG_SETTINGSFILE_H
#define AUX_CONFIG_SETTINGSFILE_H

#include "config/catalogue.h"
#include "error/reason.h"

#include <QSettings>

#include <functional>
#include <optional>

namespace aux
{

/// Makes the JSON file in the configuration directory what a default-constructed QSettings of the
/// process opens, and removes a lock that nobody holds.
void useSettingsFile();

/// Returns the file of a default-constructed QSettings, without opening it.
QString settingsFileName();

/// The settings as this process has them: those of the file, and over them what could not be
/// written yet. Where the file cannot be read there are only these.
class CurrentSettings
{
public:
    /// Writes what other QSettings of the process have not yet written.
    CurrentSettings();

    /// Returns whether the file could be read, or there is none.
    bool isComplete() const { return m_reason.isNone(); }
    /// Returns why the file could not be read.
    const Reason &reason() const { return m_reason; }
    QVariant value(const QString &key, const QVariant &fallback) const;
    QVariant value(const Setting &setting) const;

private:
    Reason m_reason;
    QSettings::SettingsMap m_pending;
    // QSettings may have read an old file, and then looked at the time of a new one.
    QSettings::SettingsMap m_stored;
    // Opened when first needed: what is only here comes from the files it falls back to.
    mutable std::optional<QSettings> m_fallbacks;
};

/// Changes settings whose keys have no leading "/".
using Change = std::function<void(QSettings::SettingsMap &)>;

/// What becomes of a change that cannot be written.
enum class WhenNotWritten { KeepPending, Forget };

/// Applies a change to the settings and replaces the settings file
/// as a whole. Without a reason all of it is fsynced.
///
/// A file that cannot be read stays as it is. One that is no JSON object is kept as "<file>.bad"
/// before it is replaced; where that fails it stays as well. A change that is kept pending is
/// written together with the next one that can be written, or by syncSettings().
///
/// Blocks until all who came before have written.
Reason changeSettings(const Change &change,
                      WhenNotWritten whenNotWritten = WhenNotWritten::KeepPending);

/// Writes what is pending.
void syncSettings();

} // namespace aux

#endif
