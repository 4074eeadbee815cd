// SPDX-License-Identifier: MIT
#ifndef AUX_CONFIG_OWNERSHIP_H
#define AUX_CONFIG_OWNERSHIP_H

#include <QString>

namespace aux
{

/// Gives an open file the owner and group of another one or, while there is none, of the directory
/// for it. Has an effect for root only; for others what they make is theirs.
void giveToOwnerOf(const QString &path, int file);

} // namespace aux

#endif
