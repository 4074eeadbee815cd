// SPDX-License-Identifier: MIT
#ifndef AUX_FS_TURN_H
#define AUX_FS_TURN_H

#include "fs/regularfile.h"

#include <sys/types.h>

namespace aux
{

/// The turn of a move among those of all processes and threads; it ends with this object, and with
/// a killed process.
///
/// What is locked (flock) is the directory "/data": that needs no file of its own and no right to
/// write. Where there is none to open, it is the destination of the move.
class Turn
{
public:
    /// Waits until no other move is under way.
    explicit Turn(const QString &destination);

    /// Why the turn could not be had; null where it is.
    const QString &cause() const { return m_cause; }
    /// Whether the locked directory is on this device, so that flush() flushes its file system.
    bool isOn(dev_t device) const;
    bool flush() const;

private:
    Descriptor m_directory;
    QString m_cause;
};

} // namespace aux

#endif
