// SPDX-License-Identifier: MIT
#include "fs/checksum.h"
#include "aux/fshelper.h"
#include "error/debugline.h"
#include "error/failure.h"

#include <QFile>

namespace aux
{

namespace
{

Error internalError(QString message, const QString &cause)
{
    return failure(ErrorId::General, std::move(message), cause);
}

Error cannotBeRead(const QString &cause)
{
    return internalError(QStringLiteral("Internal error: path cannot be read"), cause);
}

} // namespace

std::pair<Error, Digest> digestOf(RegularFile &file,
                                  const std::function<void(const char *data, qint64 length)> &take)
{
    Digest digest;
    QByteArray piece(pieceSize, Qt::Uninitialized);
    qint64 total = 0;
    qint64 length = 0;
    while ((length = file.read(piece.data(), pieceSize)) > 0) {
        digest.add(piece.constData(), length);
        take(piece.constData(), length);
        total += length;
    }
    if (length < 0)
        return {cannotBeRead(file.cause()), Digest()};
    // The files of sysfs end before the size that they state, those of /proc state none.
    if (total < file.size())
        return {cannotBeRead(causeOf(file.path(), QStringLiteral("shorter than its size"))),
                Digest()};
    if (digest.raw().size() != Digest::size)
        return {internalError(QStringLiteral("Internal error: could not calculate checksum"),
                              causeOf(file.path(), QStringLiteral("libgcrypt has no SHA-256"))),
                Digest()};
    return {Error(), std::move(digest)};
}

std::pair<Error, Digest> digestOf(const QString &path)
{
    RegularFile file(path);
    if (!file.openForReading())
        return {
            internalError(QStringLiteral("Internal error: path cannot be opened"), file.cause()),
            Digest()};
    return digestOf(file, [](const char *, qint64) {});
}

std::pair<Error, QString> FsHelper::generateChecksum(const QString &filePath)
{
    auto [error, digest] = digestOf(filePath);
    const QString checksum = error.hasError() ? QString() : digest.hex();
    return {std::move(error), checksum};
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
