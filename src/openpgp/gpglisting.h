// SPDX-License-Identifier: MIT
#ifndef AUX_OPENPGP_GPGLISTING_H
#define AUX_OPENPGP_GPGLISTING_H

#include "error/reason.h"

#include <QByteArrayList>
#include <QVector>

/// What gpg and gpgv tell in the forms that they make for programs.
namespace aux::gpg
{

/// @{
/// What a key is refused with.
inline const Reason keyExpired = QStringLiteral("key has expired");
inline const Reason keyRevoked = QStringLiteral("key is revoked");
inline const Reason keyInvalid = QStringLiteral("key is not valid");
/// @}

/// Why gpg has not done its work, where it does not tell.
inline const Reason notDone = QStringLiteral("gpg failed");

/// Its status lines, each split at its blanks, without the mark at their start.
class Status
{
public:
    Status() = default;
    explicit Status(const QByteArray &output);

    bool has(const char *keyword) const { return !line(keyword).isEmpty(); }
    /// The first line of this keyword, which is its first word; empty where there is none.
    QByteArrayList line(const char *keyword) const;
    /// The lines from each one of this keyword to the next; those before the first are left out.
    QVector<Status> from(const char *keyword) const;
    /// Why no message was decrypted with the key; `hasSucceeded` is what gpg's exit status says.
    Reason whyNotDecrypted(bool hasSucceeded) const;
    /// Why nothing was signed.
    Reason whyNotSigned(bool hasSucceeded) const;
    /// Whether an import has read a secret key, but could not keep it.
    bool isSecretKeyLost() const;

private:
    bool isPassPhraseWrong() const;

    QVector<QByteArrayList> m_lines;
};

/// A primary key or a subkey.
struct Key {
    enum class Validity { Fine, Revoked, Expired, Invalid };
    enum class Use : char { Encrypting = 'e', Signing = 's' };

    Validity validity = Validity::Fine;
    qint64 created = 0;      // seconds since the epoch
    qint64 expires = 0;      // the same; 0: never
    QByteArray capabilities; // a letter each; lower case: of this part itself
    QByteArray fingerprint;
    QString name; // the first user id
    QVector<Key> subkeys;

    /// Why it is no key now, a time in seconds since the epoch: it is not yet made, or faulty.
    Reason whyInvalid(qint64 now) const;
    /// Why it cannot serve now for this.
    Reason whyUseless(Use use, qint64 now) const;
};

/// The keys of a listing --with-colons.
QVector<Key> parseKeys(const QByteArray &listing);

} // namespace aux::gpg

#endif
