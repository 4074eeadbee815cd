// SPDX-License-Identifier: MIT
#ifndef AUX_OPENPGP_PACKETS_H
#define AUX_OPENPGP_PACKETS_H

#include <QByteArray>
#include <QVector>

#include <optional>

/// The outside of what OpenPGP (RFC 4880) puts into files.
namespace aux::gpg
{

namespace tag
{

constexpr int signature = 2;
constexpr int secretKey = 5;
constexpr int publicKey = 6;
constexpr int secretSubkey = 7;

} // namespace tag

/// The tag of the packet that begins with this byte (4.2); nothing where none does.
std::optional<int> packetTag(char first);

struct Packet {
    int tag = 0;
    QByteArray content; // with its header
    QByteArray body;    // without
};

/// All packets; none where this is no sequence of whole packets, each of which says how long it is.
QVector<Packet> packetsOf(const QByteArray &content);

/// What all ASCII armours (6.2) of a text hold, one after the other, empty where one is damaged;
/// what is no text is returned as it is. The checksum does not count: what can be told by it, the
/// signatures tell as well.
QByteArray dearmoured(const QByteArray &content);

} // namespace aux::gpg

#endif
