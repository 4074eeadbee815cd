// SPDX-License-Identifier: MIT
#include "containerfile.h"

#include "progress.h"

#include <QCryptographicHash>

namespace auxctl
{

aux::Error checkNameOption(const Invocation &invocation)
{
    const QString name = invocation.value("name");
    if (!invocation.isSet("name") || aux::container::isPlainName(name))
        return {};
    return problem(QStringLiteral("\"%1\" is no file name").arg(name), ExitStatus::Usage);
}

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
    return aux::container::typeOfTag(name.toUpper().toLatin1());
}

ContainerFile::ContainerFile(const QString &path) : m_file(path)
{
    if (!m_file.open(QIODevice::ReadOnly)) {
        m_error = fileProblem("open", m_file);
        return;
    }
    const uchar *mapping = m_file.size() < aux::container::minimumSize
                               ? nullptr
                               : m_file.map(0, m_file.size()); // only the header's pages are read
    const char *data = reinterpret_cast<const char *>(mapping);
    const auto header =
        data == nullptr ? std::nullopt : aux::container::parseHeader(data, m_file.size());
    if (header && header->type != aux::container::Type::Unknown)
        m_header = *header;
    else
        m_error = problem(QStringLiteral("%1 is no container").arg(path));
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
