// SPDX-License-Identifier: MIT
#include "container/container.h"
#include "container/containerheader.h"
#include "error/debugline.h"
#include "fs/checksum.h"

#include <QFile>
#include <QFileInfo>

namespace aux
{

namespace
{

constexpr const char *packing = "packFileToBinContainer";
constexpr const char *unpacking = "unpackFileFromBinContainer";

/// Passes the failure of a checksum on, which also goes to the debug log.
Error passOn(const char *operation, const Error &error)
{
    debugLine(operation, ": ", error);
    return error;
}

QByteArray storedName(const QString &name)
{
    const QByteArray bytes = name.toUtf8();
    return bytes.left(static_cast<int>(qstrlen(bytes.constData()))); // up to the first zero byte
}

/// Opens a file to write, emptied, unless it is the input.
Reason openOutput(RegularFile &output, const RegularFile &input)
{
    if (!output.openForWriting())
        return reason::cannotCreate.because(output.cause());
    if (output.isSameAs(input))
        return reason::cannotCreate.because(output.path(), QStringLiteral("is the input itself"));
    return output.truncate() ? Reason() : reason::cannotCreate.because(output.cause());
}

/// Removes what could not be completed.
void discard(RegularFile &output)
{
    output.close();
    QFile::remove(output.path());
}

/// Writes the payload, then what stands in front of it: before that the file is no container.
Error writeContainer(RegularFile &input, container::Type type, const QByteArray &name,
                     RegularFile &output)
{
    const qint64 payloadSize = input.size();
    bool isWritten =
        container::rowOf(type) != nullptr && output.seek(container::fixedSize + name.size());
    qint64 copied = 0;
    const auto copy = [&](const char *data, qint64 length) {
        isWritten = isWritten && output.write(data, length);
        copied += length;
        return true; // an input that cannot be read counts for more than a full storage
    };
    const auto [error, digest] = digestOf(input, copy);
    if (error.hasError())
        return passOn(packing, error);
    const auto header =
        container::encodeHeader(type, digest.raw(), name, static_cast<quint32>(payloadSize));
    if (!header)
        return refuse(packing, QStringLiteral("Invalid Filetype given"));
    if (isWritten && copied != payloadSize)
        return refuse(packing, reason::cannotWrite.because(input.path(),
                                                           QStringLiteral("has changed its size")));
    if (!isWritten || !output.seek(0) || !output.write(header->constData(), header->size()) ||
        !output.close())
        return refuse(packing, reason::cannotWrite.because(output.cause()));
    return {};
}

/// Copies the payload to a new file; removes that where it fails.
Reason writePayload(RegularFile &input, const container::Header &header, RegularFile &output)
{
    Reason reason = openOutput(output, input);
    if (!reason.isNone())
        return reason;
    bool isWritten = true;
    const bool isRead =
        input.seek(header.payloadOffset()) &&
        input.readExactly(header.payloadLength, [&](const char *data, qint64 length) {
            return isWritten = output.write(data, length);
        });
    if (!isWritten || (isRead && !output.close()))
        reason = reason::cannotWrite.because(output.cause());
    else if (!isRead)
        reason = reason::cannotRead.because(input.cause());
    if (!reason.isNone())
        discard(output);
    return reason;
}

} // namespace

Error container::pack(const QString &inFile, Type type, const QString &name, const QString &outFile)
{
    RegularFile input(inFile);
    if (!input.openForReading())
        return refuse(packing, reason::cannotRead.because(input.cause()));
    if (input.size() > maximumPayload)
        return refuse(packing,
                      reason::cannotCreate.because(inFile, QStringLiteral("has 4 GiB or more")));
    RegularFile output(outFile);
    const Reason refusal = openOutput(output, input);
    if (!refusal.isNone())
        return refuse(packing, refusal);
    Error error = writeContainer(input, type, storedName(name), output);
    if (error.hasError())
        discard(output);
    return error;
}

Error DataHelper::packFileToBinContainer(const QString &inFile, ZEL_FILE_TYPE type,
                                         const QString &outFile)
{
    return container::pack(inFile, type, QFileInfo(inFile).fileName(), outFile);
}

Error DataHelper::unpackFileFromBinContainer(const QString &inFile, ZEL_FILE_TYPE &type,
                                             const QString &outDir, QString &outFile)
{
    RegularFile input(inFile);
    if (!input.openForReading())
        return refuse(unpacking, reason::cannotRead.because(input.cause()));
    container::Header header;
    header.type = type;
    Reason refusal = container::readHeader(input, header);
    type = header.type;
    if (refusal.isNone() && input.size() < header.containerSize())
        refusal = container::tooSmall;
    if (!refusal.isNone())
        return refuse(unpacking, refusal);

    const QString name = outFile.isEmpty() ? header.fileName() : outFile;
    if (name.isEmpty())
        return refuse(unpacking, reason::cannotCreate.because(
                                     inFile, QStringLiteral("stores no plain file name")));
    const QString path = outDir + QLatin1Char('/') + name;
    RegularFile output(path);
    refusal = writePayload(input, header, output);
    if (!refusal.isNone())
        return refuse(unpacking, refusal);

    const auto [error, digest] = digestOf(path);
    if (error.hasError())
        return passOn(unpacking, error);
    if (digest.raw() != header.digest)
        return refuse(unpacking, QStringLiteral("SHA256sum check failed"));
    outFile = path;
    return {};
}

} // namespace aux
