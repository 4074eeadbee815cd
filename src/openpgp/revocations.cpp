// SPDX-License-Identifier: MIT
#include "openpgp/revocations.h"
#include "openpgp/signatures.h"

#include <QByteArrayList>
#include <QCryptographicHash>
#include <QtEndian>

#include <algorithm>

namespace aux::gpg
{

namespace
{

// Kinds of signatures (RFC 4880, 5.2.1).
constexpr char ofKey = 0x20;
constexpr char ofSubkey = 0x28;

/// Whether it is a signature of this kind.
bool isOfKind(const Packet &packet, char kind)
{
    constexpr int byte = 1; // of the body
    return packet.tag == tag::signature && packet.body.size() > byte && packet.body[byte] == kind;
}

/// What its signatures name a key by (12.2); nothing of what is none.
QByteArray keyId(const Packet &packet)
{
    constexpr int size = 8; // bytes
    if (packet.tag != tag::publicKey)
        return {};
    QByteArray length(sizeof(quint16), '\0');
    qToBigEndian(static_cast<quint16>(packet.body.size()), length.data());
    return QCryptographicHash::hash('\x99' + length + packet.body, QCryptographicHash::Sha1)
        .right(size);
}

/// The place of the key that a packet revokes; -1 where it revokes none of them.
int revokedKey(const Packet &packet, const QByteArrayList &keyIds)
{
    if (!isOfKind(packet, ofKey))
        return -1;
    const auto key = std::find_if(keyIds.begin(), keyIds.end(), [&packet](const QByteArray &id) {
        return !id.isEmpty() && packet.body.contains(id);
    });
    return key == keyIds.end() ? -1 : static_cast<int>(key - keyIds.begin());
}

} // namespace

bool isWeakRevocation(const Packet &packet)
{
    constexpr int digest = 3; // byte of the body
    return (isOfKind(packet, ofKey) || isOfKind(packet, ofSubkey)) && packet.body.size() > digest &&
           isWeakDigest(QByteArray::number(packet.body[digest]));
}

QByteArray withRevocationsInPlace(const QVector<Packet> &packets)
{
    QByteArrayList pieces;
    QByteArrayList keyIds;
    for (const Packet &packet : packets) {
        pieces += packet.content;
        keyIds += keyId(packet);
    }
    for (int i = 0; i < packets.size(); ++i) {
        const int key = revokedKey(packets[i], keyIds);
        if (key >= 0) {
            pieces[i].clear();
            pieces[key] += packets[i].content;
        }
    }
    return pieces.join();
}

} // namespace aux::gpg
