// SPDX-License-Identifier: MIT
#include "aux/fshelper.h"
#include "error/debugline.h"
#include "error/failure.h"

#include <QCryptographicHash>
#include <QFile>

namespace aux
{

namespace
{

Error internalError(QString message)
{
    return failure(ErrorId::General, std::move(message));
}

/// Feeds the whole file to the hash; Qt reports no read error on a file of size 0.
bool readInto(QCryptographicHash &hash, QFile &file)
{
    return hash.addData(&file) && file.error() == QFileDevice::NoError;
}

} // namespace

std::pair<Error, QString> FsHelper::generateChecksum(const QString &filePath)
{
    constexpr auto algorithm = QCryptographicHash::Sha256;
    QCryptographicHash hash(algorithm);
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly))
        return {internalError(QStringLiteral("Internal error: path cannot be opened")), {}};
    if (!readInto(hash, file))
        return {internalError(QStringLiteral("Internal error: path cannot be read")), {}};
    const QByteArray digest = hash.result();
    Error error;
    if (digest.size() != QCryptographicHash::hashLength(algorithm))
        error = internalError(QStringLiteral("Internal error: could not calculate checksum"));
    return {std::move(error), QString::fromLatin1(digest.toHex())};
}

bool FsHelper::validateChecksum(const QString &filePath, const QString &checksum)
{
    const auto refuse = [](const auto &...reason) {
        debugLine("validateChecksum", reason...);
        return false;
    };
    if (filePath.isEmpty())
        return refuse(": invalid path parameter");
    if (checksum.isEmpty())
        return refuse(": invalid checksum parameter");
    if (!QFile::exists(filePath))
        return refuse(": path does not exist");
    const auto [error, actual] = generateChecksum(filePath);
    if (error.hasError())
        return refuse(": ", error);
    if (actual != checksum)
        return refuse(": checksum mismatch");
    return true;
}

} // namespace aux
