// SPDX-License-Identifier: MIT
#ifndef AUX_CONFIG_SETTINGSLOCK_H
#define AUX_CONFIG_SETTINGSLOCK_H

#include <QLockFile>

namespace aux
{

/// Removes the lock beside a settings file that a writer left there: one that is no file, is empty
/// and older than two seconds, or names a process that does not run, or runs another program.
void removeAbandonedLock(const QString &settingsFile);

/// The lock that QSettings takes to write a settings file: keeps writers out that know of no other.
///
/// Waits three seconds for what nobody holds and what cannot be removed, and thirty for a writer
/// that runs; after that there is no lock.
class SettingsLock
{
public:
    explicit SettingsLock(const QString &settingsFile);

    bool isHeld() const { return m_lock.isLocked(); }

private:
    QLockFile m_lock; // gives itself up
};

} // namespace aux

#endif
