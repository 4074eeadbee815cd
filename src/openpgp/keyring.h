// SPDX-License-Identifier: MIT
#ifndef AUX_OPENPGP_KEYRING_H
#define AUX_OPENPGP_KEYRING_H

#include "error/reason.h"

/// The home directory of gpg that holds the imported key for as long as it is needed.
namespace aux::keyring
{

extern const QString path;
extern const Reason noKey;
extern const Reason noRoom;

/// Makes sure of it, with nothing running on it. The reason where it cannot be used: there is none,
/// or what has its name was not made here. That is never used, followed or removed.
Reason requireKeyring();

/// Returns whether gpg could write to it; where not, what gpg says is not to be trusted.
bool hasRoom();

/// Makes it anew, without a key.
Reason make();

/// Removes it, with what runs on it; none is fine.
Reason remove();

/// Ends what gpg has left running on it: an agent that still knows the pass phrase would accept
/// any. The reason where something could not be ended.
Reason stopAgents();

} // namespace aux::keyring

#endif
