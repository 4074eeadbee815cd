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

} // namespace

std::pair<Error, Digest> digestOf(RegularFile &file, const TakePiece &take)
{
    Digest digest;
    Error error;
    const auto add = [&](const char *data, qint64 length) {
        digest.add(data, length);
        return take(data, length);
    };
    if (!file.readToEnd(add))
        error = internalError(QStringLiteral("Internal error: path cannot be read"), file.cause());
    else if (digest.raw().size() != Digest::size)
        error = internalError(QStringLiteral("Internal error: could not calculate checksum"),
                              causeOf(file.path(), QStringLiteral("libgcrypt has no SHA-256")));
    return {std::move(error), std::move(digest)};
}

std::pair<Error, Digest> digestOf(const QString &path)
{
    RegularFile file(path);
    if (file.openForReading())
        return digestOf(file, [](const char *, qint64) { return true; });
    return {internalError(QStringLiteral("Internal error: path cannot be opened"), file.cause()),
            Digest()};
}

std::pair<Error, QString> FsHelper::generateChecksum(const QString &filePath)
{
    auto [error, digest] = digestOf(filePath);
    const QString checksum = error.hasError() ? QString() : digest.hex();
    return {std::move(error), checksum};
}

Verdict compareChecksum(const QString &path, const QString &checksum)
{
    const auto refuse = [](const auto &...reason) {
        debugLine("validateChecksum", reason...);
        return Verdict{false, {}};
    };
    if (path.isEmpty())
        return refuse(": invalid path parameter");
    if (checksum.isEmpty())
        return refuse(": invalid checksum parameter");
    if (!QFile::exists(path))
        return refuse(": path does not exist");
    const auto [error, actual] = FsHelper::generateChecksum(path);
    if (error.hasError()) {
        refuse(": ", error);
        return {false, error.getExtraData()};
    }
    if (actual != checksum)
        return refuse(": checksum mismatch");
    return {true, {}};
}

bool FsHelper::validateChecksum(const QString &filePath, const QString &checksum)
{
    return compareChecksum(filePath, checksum).isGood;
}

} // namespace aux
