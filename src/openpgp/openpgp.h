// SPDX-License-Identifier: MIT
#ifndef AUX_OPENPGP_OPENPGP_H
#define AUX_OPENPGP_OPENPGP_H

#include "aux/error.h"
#include "fs/newfile.h"

namespace aux
{

/// @{
/// Are DataHelper's encryptFileGPG and decryptFileGPG, for an output of any kind, which they open
/// and commit.
Error encryptFile(const QString &inFile, NewFile &output);
Error decryptFile(const QString &inFile, NewFile &output, const QString &passPhrase);
/// @}

} // namespace aux

#endif
