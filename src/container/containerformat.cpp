// SPDX-License-Identifier: MIT
#include "container/containerformat.h"

#include <QtEndian>

#include <algorithm>
#include <climits>

namespace aux::container
{

namespace
{

QByteArray encodeLength(quint32 length)
{
    QByteArray bytes(lengthSize, Qt::Uninitialized);
    qToLittleEndian(length, bytes.data());
    return bytes;
}

qint64 decodeLength(const char *data)
{
    return qFromLittleEndian<quint32>(data);
}

} // namespace

bool isPlainName(const QString &name)
{
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..") &&
           !name.contains(QLatin1Char('/')) && !name.contains(QChar::Null);
}

QString Header::fileName() const
{
    // No file system takes a longer name, and Qt's string functions take the length as an int.
    if (nameLength > NAME_MAX)
        return {};
    const QString text = QString::fromUtf8(name, static_cast<int>(nameLength));
    return isPlainName(text) ? text : QString();
}

const TypeRow *rowOf(Type type)
{
    const auto index = static_cast<std::size_t>(type);
    return index < typeRows.size() ? &typeRows[index] : nullptr;
}

Type typeOfTag(const QByteArray &tag)
{
    const auto found = std::find_if(typeRows.begin(), typeRows.end(),
                                    [&](const TypeRow &row) { return tag == row.tag; });
    return static_cast<Type>(found - typeRows.begin()); // Unknown is one past the last
}

std::optional<QByteArray> encodeHeader(Type type, const QByteArray &digest, const QByteArray &name,
                                       quint32 payloadLength)
{
    const TypeRow *row = rowOf(type);
    if (row == nullptr)
        return std::nullopt;
    return QByteArray(brand) + row->tag + digest + encodeLength(static_cast<quint32>(name.size())) +
           name + encodeLength(payloadLength);
}

Type parseType(const char *data)
{
    const QByteArray magic(data, magicSize);
    return magic.startsWith(brand) ? typeOfTag(magic.mid(brandSize)) : Type::Unknown;
}

std::optional<Header> parseHeader(const char *data, qint64 size)
{
    Header header;
    header.type = parseType(data);
    header.digest = QByteArray(data + digestOffset, digestSize);
    header.nameLength = decodeLength(data + nameLengthOffset);
    // In 64 bits, where a length near 2^32 does not wrap to a small sum. One byte beyond the
    // payload's length is asked for on purpose.
    if (size < header.payloadOffset() + 1)
        return std::nullopt;
    header.name = data + nameOffset;
    header.payloadLength = decodeLength(header.name + header.nameLength);
    return header;
}

} // namespace aux::container
