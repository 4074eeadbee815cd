// SPDX-License-Identifier: MIT
#ifndef AUXCTL_TRUSTEDKEYS_H
#define AUXCTL_TRUSTEDKEYS_H

#include "openpgp/gpglisting.h"
#include "result.h"

namespace auxctl
{

/// Where it exists, this terminal takes a configuration into use only with a signature by one of
/// the public keys in it.
extern const QString trustedKeysPath;

/// Whether there is anything of that name, readable or not.
bool requiresSignatures();

/// A public key of a file.
struct TrustedKey {
    aux::gpg::Key listing;
    QByteArray packets;

    [[nodiscard]] QString fingerprint() const { return listing.fingerprint; }
    /// Why nothing that it signs would be accepted now; none where it would be.
    [[nodiscard]] aux::Reason whyUseless() const;
    [[nodiscard]] Record description() const;
};

/// All descriptions.
QVector<Record> descriptionsOf(const QVector<TrustedKey> &keys);
#define AUXCTL_KEYS_SHAPE                                                                          \
    "[{fingerprint: text, made: text, expires: text, state: text, name: text}]"

/// The keys of a file, armoured or not; fails where it has none, or a secret one.
QVector<TrustedKey> keysOf(const QString &path);

/// The keys that this terminal trusts; none where it takes configurations without a signature.
QVector<TrustedKey> trustedKeys();

QStringList trustedFingerprints();

/// Makes them the only ones, all at once; none lets it take configurations without a signature.
void setTrustedKeys(const QVector<TrustedKey> &keys);

} // namespace auxctl

#endif
