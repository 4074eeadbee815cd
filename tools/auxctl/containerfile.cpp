// SPDX-License-Identifier: MIT
#include "containerfile.h"

#include "progress.h"

#include <QCryptographicHash>

namespace auxctl
{

namespace
{

QString plainName(const QString &name)
{
    if (!aux::container::isPlainName(name))
        misuse(QStringLiteral("\"%1\" is no file name").arg(name));
    return name;
}

} // namespace

constexpr ValueOption<QString> fileNameOption{"name", "NAME", "Use this file name", plainName};

QString typeName(aux::container::Type type)
{
    return aux::container::rowOf(type)->tag;
}

QStringList typeNames()
{
    QStringList names;
    for (const aux::container::TypeRow &row : aux::container::typeRows)
        names += row.tag;
    return names;
}

aux::container::Type typeFromName(const QString &name)
{
    const auto type = aux::container::typeOfTag(name.toUpper().toLatin1());
    if (type == aux::container::Type::Unknown)
        misuseUnknown("type", name, typeNames());
    return type;
}

ContainerFile::ContainerFile(const QString &path) : m_file(path)
{
    if (!m_file.open(QIODevice::ReadOnly))
        failOn("open", m_file);
    const uchar *mapping = m_file.size() < aux::container::minimumSize
                               ? nullptr
                               : m_file.map(0, m_file.size()); // only the header's pages are read
    const char *data = reinterpret_cast<const char *>(mapping);
    const auto header =
        data == nullptr ? std::nullopt : aux::container::parseHeader(data, m_file.size());
    if (!header || header->type == aux::container::Type::Unknown)
        fail(QStringLiteral("%1 is no container").arg(path));
    m_header = *header;
}

bool ContainerFile::isComplete() const
{
    return m_file.size() >= m_header.containerSize();
}

bool ContainerFile::hasDigest()
{
    const Progress progress(m_file.fileName());
    QCryptographicHash hash(QCryptographicHash::Sha256);
    constexpr qint64 pieceSize = 1 << 16;
    m_file.seek(m_header.payloadOffset());
    qint64 left = m_header.payloadLength;
    while (left > 0) {
        const QByteArray piece = m_file.read(std::min(left, pieceSize));
        if (piece.isEmpty())
            return false;
        hash.addData(piece);
        left -= piece.size();
    }
    return hash.result() == m_header.digest;
}

Record ContainerFile::description() const
{
    return {{"type", typeName(m_header.type)},
            {"name", m_header.fileName()},
            {"size", m_header.payloadLength},
            {"digest", QString(m_header.digest.toHex())},
            {"complete", isComplete()}};
}

} // namespace auxctl
