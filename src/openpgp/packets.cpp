// SPDX-License-Identifier: MIT
#include "openpgp/packets.h"

#include <QDataStream>
#include <QIODevice>

namespace aux::gpg
{

namespace
{

constexpr unsigned int packetBit = 0x80;
constexpr unsigned int newFormatBit = 0x40;
constexpr qint64 unknownLength = -1;

template <typename Integer>
qint64 number(QDataStream &stream)
{
    Integer value = 0;
    stream >> value;
    return value;
}

qint64 oldLength(QDataStream &stream, unsigned int lengthType)
{
    switch (lengthType) {
    case 0:
        return number<quint8>(stream);
    case 1:
        return number<quint16>(stream);
    case 2:
        return number<quint32>(stream);
    default:
        return unknownLength;
    }
}

qint64 newLength(QDataStream &stream)
{
    constexpr qint64 twoBytes = 192; // from here on
    constexpr qint64 partial = 224;
    constexpr qint64 fourBytes = 255;
    const qint64 first = number<quint8>(stream);
    if (first < twoBytes)
        return first;
    if (first < partial)
        return (first - twoBytes) * 256 + number<quint8>(stream) + twoBytes;
    return first == fourBytes ? number<quint32>(stream) : unknownLength;
}

/// What the lines from `line` to the end of the armour hold; leaves `line` there.
QByteArray armourContent(const QList<QByteArray> &lines, int &line)
{
    while (line < lines.size() && !lines[line].trimmed().isEmpty())
        ++line; // its headers
    QByteArray text;
    for (++line; line < lines.size() && !lines[line].startsWith('-'); ++line) {
        const bool isChecksum = lines[line].startsWith('=');
        text += isChecksum ? QByteArray() : lines[line].trimmed();
    }
    const auto result =
        QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    return result.decodingStatus == QByteArray::Base64DecodingStatus::Ok ? result.decoded
                                                                         : QByteArray();
}

} // namespace

std::optional<int> packetTag(char first)
{
    const unsigned int byte = static_cast<unsigned char>(first);
    if ((byte & packetBit) == 0)
        return std::nullopt;
    return static_cast<int>((byte & newFormatBit) != 0 ? byte & 0x3fU : (byte & 0x3cU) >> 2U);
}

QVector<Packet> packetsOf(const QByteArray &content)
{
    QVector<Packet> packets;
    QDataStream stream(content); // big-endian
    while (!stream.atEnd()) {
        const auto begin = static_cast<int>(stream.device()->pos());
        const auto first = static_cast<unsigned int>(number<quint8>(stream));
        const auto tag = packetTag(static_cast<char>(first));
        const qint64 length =
            (first & newFormatBit) != 0 ? newLength(stream) : oldLength(stream, first & 3U);
        const auto body = static_cast<int>(stream.device()->pos());
        if (!tag || length < 0 || length > content.size() || stream.status() != QDataStream::Ok ||
            stream.skipRawData(static_cast<int>(length)) != length)
            return {};
        const auto end = static_cast<int>(stream.device()->pos());
        packets += {*tag, content.mid(begin, end - begin), content.mid(body, end - body)};
    }
    return packets;
}

QByteArray dearmoured(const QByteArray &content)
{
    if (content.isEmpty() || packetTag(content.at(0)))
        return content;
    const QList<QByteArray> lines = content.split('\n');
    QByteArray all;
    for (int line = 0; line < lines.size(); ++line) {
        if (!lines[line].startsWith("-----BEGIN PGP "))
            continue;
        const QByteArray packets = armourContent(lines, line);
        if (packets.isEmpty())
            return {};
        all += packets;
    }
    return all;
}

} // namespace aux::gpg
