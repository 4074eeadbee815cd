// SPDX-License-Identifier: MIT
#ifndef AUX_CONTAINER_CONTAINERHEADER_H
#define AUX_CONTAINER_CONTAINERHEADER_H

#include "container/containerformat.h"
#include "error/reason.h"
#include "fs/regularfile.h"

namespace aux::container
{

inline const Reason tooSmall = QStringLiteral("Input file too small");

/// Reads everything in front of the payload of a file that has just been opened, into `header`; the
/// reason where that fails. Its type is set as soon as the magic has been read. Whether the payload
/// is all there is for the caller to check.
Reason readHeader(RegularFile &file, Header &header);

} // namespace aux::container

#endif
