// SPDX-License-Identifier: MIT
#include "command.h"
#include "streams.h"

#include <aux/crc32.h>

namespace auxctl
{

namespace
{

Result crc32(const Call &call)
{
    const Input input(call.argument(0));
    unsigned int crc = 0;
    input.read([&crc](const char *data, qint64 length) {
        crc = aux::crc32(crc,
                         reinterpret_cast<unsigned char *>(const_cast<char *>(data)), // only read
                         static_cast<unsigned int>(length));
        return true;
    });
    return plainText(QStringLiteral("%1").arg(crc, 8, 16, QLatin1Char('0')));
}

const Registration row{{"crc32", "FILE", "crc32", "text", "Print the CRC-32 of a file", {}, crc32}};

} // namespace

} // namespace auxctl
