// SPDX-License-Identifier: MIT
#ifndef AUX_FS_TURN_H
#define AUX_FS_TURN_H

#include "fs/regularfile.h"

namespace aux
{

/// The turn of those, in all processes and threads, that are about to remove or replace a name; it
/// ends with this object, and with a killed process.
///
/// What is locked (flock) is a directory that all of them can open: that needs no file of its own
/// and no right to write. Whoever may open it can hold it for ever, so that nothing waits long for
/// it.
class Turn
{
public:
    /// Waits for five seconds at most.
    explicit Turn(const QString &directory);

    /// Why the turn could not be had; null where it is.
    const QString &cause() const { return m_cause; }

private:
    Descriptor m_directory;
    QString m_cause;
};

} // namespace aux

#endif
