// SPDX-License-Identifier: MIT
#include "container/containerformat.h"

#include <QtEndian>

#include <algorithm>

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

Type typeOfMagic(const QByteArray &magic)
{
    return magic.startsWith(brand) ? typeOfTag(magic.mid(brandSize)) : Type::Unknown;
}

} // namespace

bool isPlainName(const QString &name)
{
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..") &&
           !name.contains(QLatin1Char('/')) && !name.contains(QChar::Null);
}

QString Header::fileName() const
{
    const QString text = QString::fromUtf8(name.constData(), name.size()); // beyond a NUL too
    return isPlainName(text) ? text : QString();
}

const TypeRow *rowOf(Type type)
{
    const auto index = static_cast<std::size_t>(type);
    return index < typeRows.size() ? &typeRows[index] : nullptr;
}

Type typeOfTag(const QByteArray &tag)
{
    const auto *const found = std::find_if(typeRows.begin(), typeRows.end(),
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

Header parseFront(const char *data)
{
    Header header;
    header.type = typeOfMagic(QByteArray(data, magicSize));
    header.digest = QByteArray(data + digestOffset, digestSize);
    header.nameLength = parseLength(data + nameLengthOffset);
    return header;
}

qint64 parseLength(const char *data)
{
    return qFromLittleEndian<quint32>(data);
}

} // namespace aux::container
