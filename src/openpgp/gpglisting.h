// SPDX-License-Identifier: MIT
#ifndef AUX_OPENPGP_GPGLISTING_H
#define AUX_OPENPGP_GPGLISTING_H

#include "error/reason.h"

#include <QByteArrayList>
#include <QVector>

/// What gpg tells in the forms that it makes for programs.
namespace aux::gpg
{

/// Its status lines, each split at its blanks, without the mark at their start.
class Status
{
public:
    Status() = default;
    explicit Status(const QByteArray &output);

    bool has(const char *keyword) const;
    /// Why no message was decrypted with the key; `hasSucceeded` is what gpg's exit status says.
    Reason whyNotDecrypted(bool hasSucceeded) const;
    /// Whether an import has read a secret key, but could not keep it.
    bool isSecretKeyLost() const;

private:
    bool isPassPhraseWrong() const;

    QVector<QByteArrayList> m_lines;
};

/// A primary key or a subkey.
struct Key {
    enum class Validity { Fine, Revoked, Expired, Invalid };

    Validity validity = Validity::Fine;
    qint64 created = 0;      // seconds since the epoch
    QByteArray capabilities; // a letter each; lower case: of this part itself
    QByteArray fingerprint;
    QVector<Key> subkeys;

    /// Why it is no key now, a time in seconds since the epoch: it is not yet made, or faulty.
    Reason whyInvalid(qint64 now) const;
    /// Why nothing can be encrypted to it now.
    Reason whyUseless(qint64 now) const;
};

/// The keys of a listing --with-colons.
QVector<Key> parseKeys(const QByteArray &listing);

} // namespace aux::gpg

#endif
