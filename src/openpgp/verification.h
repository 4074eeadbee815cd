// SPDX-License-Identifier: MIT
#ifndef AUX_OPENPGP_VERIFICATION_H
#define AUX_OPENPGP_VERIFICATION_H

#include "aux/datahelper.h"
#include "openpgp/filepair.h"

namespace aux
{

/// The largest file of trusted keys, in bytes.
constexpr int largestKeyring = 1024 * 1024;

/// The answer to the question who has signed something.
struct SignatureVerdict {
    Reason reason;         // none: a trusted key has
    bool isAnswer = false; // else the question could not be asked
    DataHelper::Signature signature = {};

    /// What an operation of this name returns: the signature only where all went well.
    std::pair<Error, DataHelper::Signature> result(const char *operation) const;
};

/// Verifies a file with its detached signature and a file of trusted public keys.
SignatureVerdict verifyDetached(const QString &file, const QString &signatureFile,
                                const QString &keyringFile);

/// Verifies a signed message, the pair's input, and writes what was signed to its output.
SignatureVerdict verifyMessage(FilePair &files, const QString &keyringFile);

/// The packets of the public keys in a file without armour, or why it has none.
std::pair<Reason, QByteArray> readKeyring(const QString &keyringFile);

} // namespace aux

#endif
