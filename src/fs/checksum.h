// SPDX-License-Identifier: MIT
#ifndef AUX_FS_CHECKSUM_H
#define AUX_FS_CHECKSUM_H

#include "aux/error.h"
#include "fs/digest.h"
#include "fs/regularfile.h"

#include <utility>

namespace aux
{

/// Reads an open file to its end and returns the digest of what was read. Each piece is also handed
/// to `take`. The failures are those of FsHelper::generateChecksum.
std::pair<Error, Digest> digestOf(RegularFile &file, const TakePiece &take);

/// Returns the digest of the file at the path, with the failures of FsHelper::generateChecksum.
std::pair<Error, Digest> digestOf(const QString &path);

/// Whether a file has the checksum that was expected, and what of the system kept that from being
/// known, if anything.
struct Verdict {
    bool isGood;
    QString cause;
};

/// Is FsHelper::validateChecksum, with its debug lines.
Verdict compareChecksum(const QString &path, const QString &checksum);

} // namespace aux

#endif
