// SPDX-License-Identifier: MIT
#ifndef AUX_CONFIG_SETTINGSLOCK_H
#define AUX_CONFIG_SETTINGSLOCK_H

#include <QString>

namespace aux
{

/// Removes the lock beside a settings file where the writer that left it there no longer runs.
/// QSettings would wait 30 seconds for some of them: an empty one, or one of another host name.
///
/// Blocks up to two seconds: so long an empty lock may belong to a writer that is about to fill it.
void removeAbandonedLock(const QString &settingsFile);

} // namespace aux

#endif
