// SPDX-License-Identifier: MIT
#ifndef AUX_FS_TURN_H
#define AUX_FS_TURN_H

#include "fs/regularfile.h"

namespace aux
{

/// The turn of a move among those of all processes and threads, for the moment in which it removes
/// or replaces a name; it ends with this object, and with a killed process.
///
/// What is locked (flock) is the directory "/data": that needs no file of its own and no right to
/// write. Where there is none to open, it is the destination of the move. Whoever may open it can
/// hold it for ever, so that nothing waits long for it.
class Turn
{
public:
    /// Waits for five seconds at most.
    explicit Turn(const QString &destination);

    /// Why the turn could not be had; null where it is.
    const QString &cause() const { return m_cause; }

private:
    Descriptor m_directory;
    QString m_cause;
};

} // namespace aux

#endif
