// SPDX-License-Identifier: MIT
#include "container/containerheader.h"

#include <climits>

namespace aux::container
{

namespace
{

/// Reads so many bytes; false where the medium fails or the file has become shorter.
bool readNext(RegularFile &file, qint64 length, QByteArray &bytes)
{
    bytes.clear();
    return file.readExactly(length, [&](const char *data, qint64 size) {
        bytes.append(data, static_cast<int>(size));
        return true;
    });
}

} // namespace

Reason readHeader(RegularFile &file, Header &header)
{
    const qint64 size = file.size();
    if (size < minimumSize)
        return tooSmall;
    QByteArray bytes;
    if (!readNext(file, nameOffset, bytes))
        return reason::cannotRead.because(file.cause());
    header = parseFront(bytes.constData());
    if (header.type == Type::Unknown)
        return QStringLiteral("Invalid magic");
    // In 64 bits, where a length near 2^32 does not wrap to a small sum. One byte beyond the
    // payload's length is asked for on purpose.
    if (size < header.payloadOffset() + 1)
        return tooSmall;
    if (header.nameLength <= NAME_MAX && !readNext(file, header.nameLength, header.name))
        return reason::cannotRead.because(file.cause());
    if (!file.seek(nameOffset + header.nameLength) || !readNext(file, lengthSize, bytes))
        return reason::cannotRead.because(file.cause());
    header.payloadLength = parseLength(bytes.constData());
    return {};
}

} // namespace aux::container
