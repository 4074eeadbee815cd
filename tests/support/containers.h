// SPDX-License-Identifier: MIT
#ifndef AUX_TESTS_CONTAINERS_H
#define AUX_TESTS_CONTAINERS_H

#include <QCryptographicHash>

inline QByteArray littleEndian(quint32 value)
{
    QByteArray bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(value >> shift);
    return bytes;
}

/// A container made by hand, its digest right.
inline QByteArray container(const QByteArray &name, const QByteArray &payload,
                            const QByteArray &magic = "ZEL4DDDF")
{
    return magic + QCryptographicHash::hash(payload, QCryptographicHash::Sha256) +
           littleEndian(static_cast<quint32>(name.size())) + name +
           littleEndian(static_cast<quint32>(payload.size())) + payload;
}

#endif
