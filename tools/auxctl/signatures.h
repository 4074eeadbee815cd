// SPDX-License-Identifier: MIT
#ifndef AUXCTL_SIGNATURES_H
#define AUXCTL_SIGNATURES_H

#include "files.h"
#include "streams.h"

#include <aux/datahelper.h>

namespace auxctl
{

/// The file with the keys that are trusted.
extern const ValueOption<QString> keyringOption;

constexpr const char *signatureEnding = ".sig";

/// Where the signature of a file is kept, beside it; a misuse for standard input.
QString signaturePath(const Input &input);

/// Who has signed, as a result has it.
Record describe(const aux::DataHelper::Signature &signature);

/// Whether the file of this name is signed by a key of the keyring, and by whom; no where it has no
/// signature. Fails where that cannot be found out.
Finding verifySignature(const QString &name, const QString &path, const QString &signature,
                        const QString &keyring);

/// Copies a file to one without a name and fails unless the copy is signed by a key that this
/// terminal trusts: a medium may give something else when it is read once more.
void keepVerified(Input &input, aux::NewFile &copy);

} // namespace auxctl

#endif
