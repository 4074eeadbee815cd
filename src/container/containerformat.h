// SPDX-License-Identifier: MIT
#ifndef AUX_CONTAINER_CONTAINERFORMAT_H
#define AUX_CONTAINER_CONTAINERFORMAT_H

#include "aux/datahelper.h"
#include "fs/digest.h"

#include <QByteArray>

#include <array>
#include <optional>

// A container, all integers unsigned 32-bit little-endian, without padding:
//
//     brand "ZEL4" | type tag | digest | name length N | name | payload length L | payload
//
// The name is UTF-8 without terminator, the digest the raw SHA-256 of the payload.

namespace aux::container
{

using Type = DataHelper::ZEL_FILE_TYPE;

/// What is known of a type of container.
struct TypeRow {
    const char *tag;     // in the file and for people
    const char *content; // what it holds, in words
};

/// All types, indexed by Type.
inline constexpr std::array typeRows{
    TypeRow{"DDDF", "tachograph download"}, //
    TypeRow{"LOGF", "log"},
    TypeRow{"CFGF", "configuration"},
    TypeRow{"GPGF", "OpenPGP key"},
    TypeRow{"UPDF", "update"},
};
static_assert(typeRows.size() == static_cast<std::size_t>(Type::Unknown));

constexpr const char *brand = "ZEL4";
constexpr int brandSize = 4;
constexpr int tagSize = 4;

constexpr int magicSize = brandSize + tagSize;
constexpr int digestSize = Digest::size;
constexpr int lengthSize = 4;

constexpr int digestOffset = magicSize;
constexpr int nameLengthOffset = digestOffset + digestSize;
constexpr int nameOffset = nameLengthOffset + lengthSize;

/// What stands around the name and the payload.
constexpr qint64 fixedSize = nameOffset + lengthSize;
/// The smallest file that is looked into.
constexpr qint64 minimumSize = fixedSize + 2;
/// The payload's length has 32 bits.
constexpr qint64 maximumPayload = 0xFFFFFFFF;

static_assert(nameLengthOffset == 40);
static_assert(fixedSize == 48);

/// Whether it is one plain component of a path: not empty, not "." or "..", without "/" and NUL.
bool isPlainName(const QString &name);

struct Header {
    Type type = Type::Unknown;
    QByteArray digest;
    qint64 nameLength = 0;
    QByteArray name; // left empty where it is too long for any file system
    qint64 payloadLength = 0;

    qint64 payloadOffset() const { return fixedSize + nameLength; }
    qint64 containerSize() const { return payloadOffset() + payloadLength; }

    /// The stored name; null unless it is one plain component of a path.
    QString fileName() const;
};

/// Returns the row of a type; null for one that has none.
const TypeRow *rowOf(Type type);

/// Returns the type of this tag, Unknown where there is none.
Type typeOfTag(const QByteArray &tag);

/// Returns everything in front of the payload; nothing for a type that has no tag.
std::optional<QByteArray> encodeHeader(Type type, const QByteArray &digest, const QByteArray &name,
                                       quint32 payloadLength);

/// Reads type, digest and name length from the first nameOffset bytes.
Header parseFront(const char *data);

/// Reads a length of lengthSize bytes.
qint64 parseLength(const char *data);

} // namespace aux::container

#endif
