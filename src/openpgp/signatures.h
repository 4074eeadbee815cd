// SPDX-License-Identifier: MIT
#ifndef AUX_OPENPGP_SIGNATURES_H
#define AUX_OPENPGP_SIGNATURES_H

#include "aux/datahelper.h"
#include "openpgp/gpglisting.h"

namespace aux::gpg
{

/// What a signature is refused with that is none, or not whole.
inline const Reason signatureDamaged = QStringLiteral("signature is damaged");

/// Why gpgv has not come to an answer.
inline const Reason notJudged = QStringLiteral("gpgv failed");

/// What tells gpg and gpgv to take no signature by a digest that proves nothing any more.
QStringList weakDigestOptions();

/// Whether a digest of this number (RFC 4880, 9.4) proves nothing any more.
bool isWeakDigest(const QByteArray &number);

/// The first good signature of those that gpgv tells of, or why there is none: one that is by a
/// key that it has, now, a time in seconds since the epoch, and none beside it but such and those
/// by keys that it does not have. `hasSucceeded` is what its exit status says.
std::pair<Reason, DataHelper::Signature> judgeSignatures(const Status &status, bool hasSucceeded,
                                                         qint64 now);

} // namespace aux::gpg

#endif
