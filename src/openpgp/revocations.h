// SPDX-License-Identifier: MIT
#ifndef AUX_OPENPGP_REVOCATIONS_H
#define AUX_OPENPGP_REVOCATIONS_H

#include "openpgp/packets.h"

namespace aux::gpg
{

/// Whether it revokes a key or subkey by a digest for which gpgv does not take it, so that the key
/// would count as good.
bool isWeakRevocation(const Packet &packet);

/// The packets of a keyring, with each revocation of a key right behind that key: gpgv overlooks
/// one that somebody has added at the end.
QByteArray withRevocationsInPlace(const QVector<Packet> &packets);

} // namespace aux::gpg

#endif
