// SPDX-License-Identifier: MIT
#include "containerfile.h"

#include "fs/digest.h"
#include "progress.h"

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

bool isContainer(const QString &path)
{
    aux::RegularFile file(path);
    const auto brand =
        file.openForReading() ? file.readUpTo(aux::container::brandSize) : std::nullopt;
    if (!brand)
        fail(QStringLiteral("cannot read ") + file.cause());
    return *brand == aux::container::brand;
}

ContainerFile::ContainerFile(const QString &path) : m_file(path)
{
    if (!m_file.openForReading())
        fail(QStringLiteral("cannot open ") + m_file.cause());
    const aux::Reason reason = aux::container::readHeader(m_file, m_header);
    if (!reason.cause().isNull())
        fail(QStringLiteral("cannot read ") + reason.cause());
    if (!reason.isNone())
        fail(QStringLiteral("%1 is no container").arg(path));
}

bool ContainerFile::isComplete() const
{
    return m_file.size() >= m_header.containerSize();
}

bool ContainerFile::hasDigest()
{
    const Progress progress(m_file.path(), m_header.payloadLength);
    aux::Digest digest;
    const bool isRead =
        m_file.seek(m_header.payloadOffset()) &&
        m_file.readExactly(m_header.payloadLength, [&](const char *data, qint64 length) {
            digest.add(data, length);
            return true;
        });
    return isRead && digest.raw() == m_header.digest;
}

QByteArray ContainerFile::payload(int maximum)
{
    if (m_header.payloadLength > maximum)
        fail(QStringLiteral("%1 holds more than %2 bytes").arg(m_file.path()).arg(maximum));
    const auto payload = m_file.seek(m_header.payloadOffset())
                             ? m_file.readUpTo(static_cast<int>(m_header.payloadLength))
                             : std::nullopt;
    if (!payload)
        fail(QStringLiteral("cannot read ") + m_file.cause());
    return *payload;
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
