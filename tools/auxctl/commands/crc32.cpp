// SPDX-License-Identifier: MIT
#include "command.h"
#include "streams.h"

#include <aux/crc32.h>

#include <QFile>

namespace auxctl
{

namespace
{

Result crc32(const Call &call)
{
    const Input input(call.argument(0));
    QFile file(input.path());
    if (!file.open(QIODevice::ReadOnly))
        failOn("open", file);
    QByteArray piece(1 << 16, Qt::Uninitialized);
    unsigned int crc = 0;
    qint64 length = 0;
    while ((length = file.read(piece.data(), piece.size())) > 0)
        crc = aux::crc32(crc, reinterpret_cast<unsigned char *>(piece.data()),
                         static_cast<unsigned int>(length));
    if (length < 0)
        failOn("read", file);
    return plainText(QStringLiteral("%1").arg(crc, 8, 16, QLatin1Char('0')));
}

const Registration row{{"crc32", "FILE", "crc32", "text", "Print the CRC-32 of a file", {}, crc32}};

} // namespace

} // namespace auxctl
