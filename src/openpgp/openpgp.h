// SPDX-License-Identifier: MIT
#ifndef AUX_OPENPGP_OPENPGP_H
#define AUX_OPENPGP_OPENPGP_H

#include "aux/datahelper.h"
#include "fs/newfile.h"

namespace aux
{

/// @{
/// Are DataHelper's operations of nearly these names, for an output of any kind, which they open
/// and commit.
Error encryptFile(const QString &inFile, NewFile &output);
Error decryptFile(const QString &inFile, NewFile &output, const QString &passPhrase);
std::pair<Error, DataHelper::Signature> decryptFile(const QString &inFile, NewFile &output,
                                                    const QString &passPhrase,
                                                    const QString &keyringFile);
Error signFile(const QString &file, NewFile &signature, const QString &passPhrase);
/// @}

} // namespace aux

#endif
