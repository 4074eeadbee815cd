// SPDX-License-Identifier: MIT
#ifndef AUX_CRC32_H
#define AUX_CRC32_H

#include <aux/export.h>

namespace aux
{

/// Computes the CRC-32 of IEEE 802.3, the one of zlib, gzip and PNG.
///
/// `crc` is 0 for a new computation, or the result of the call before to continue it over the
/// next `length` bytes at `data`. A length of 0 returns `crc` unchanged, whatever `data` is.
///
/// *Guarantees*: reads the bytes and a constant table; any thread, no allocation, never fails.
/// @shown{codes,crc}
AUX_EXPORT unsigned int crc32(unsigned int crc, unsigned char *data, unsigned int length);

} // namespace aux

#endif
