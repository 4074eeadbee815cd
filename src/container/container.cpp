// SPDX-License-Identifier: MIT
#include "aux/fshelper.h"
#include "container/containerformat.h"
#include "error/debugline.h"
#include "error/reason.h"
#include "fs/fileidentity.h"

#include <QFile>
#include <QFileInfo>

#include <array>

namespace aux
{

namespace
{

constexpr qint64 chunkSize = 4096;

constexpr const char *packing = "packFileToBinContainer";
constexpr const char *unpacking = "unpackFileFromBinContainer";

const Reason tooSmall = QStringLiteral("Input file too small");

std::pair<Error, QByteArray> digestOf(const QString &path, const char *operation)
{
    auto [error, checksum] = FsHelper::generateChecksum(path);
    if (error.hasError())
        debugLine(operation, ": ", error);
    return {std::move(error), QByteArray::fromHex(checksum.toLatin1())};
}

QByteArray storedName(const QString &path)
{
    const QByteArray name = QFileInfo(path).fileName().toUtf8();
    return name.left(static_cast<int>(qstrlen(name.constData()))); // up to the first zero byte
}

/// Copies what is left to read; what went wrong shows in the size of the output.
void copyInChunks(QFile &input, QFile &output)
{
    std::array<char, chunkSize> chunk{};
    qint64 length = 0;
    while ((length = input.read(chunk.data(), chunkSize)) > 0)
        output.write(chunk.data(), length);
}

/// Removes what could not be completed, but no pipe or device, which nothing here has made. Not
/// QFile's own remove: that gives up where the closing flush fails, which is what a full disk does.
void discard(QFile &output)
{
    output.close();
    if (QFileInfo(output.fileName()).isFile())
        QFile::remove(output.fileName());
}

Error writeContainer(QFile &input, container::Type type, QFile &output)
{
    const qint64 payloadSize = input.size();
    const auto [error, digest] = digestOf(input.fileName(), packing);
    if (error.hasError())
        return error;
    const auto header = container::encodeHeader(type, digest, storedName(input.fileName()),
                                                static_cast<quint32>(payloadSize));
    if (!header)
        return refuse(packing, QStringLiteral("Invalid Filetype given"));

    output.write(*header);
    copyInChunks(input, output);
    // Writes are buffered: only now it shows whether all of them reached the file, and whether the
    // input still had the size that the header says.
    if (!output.flush() || output.size() != header->size() + payloadSize)
        return refuse(packing, reason::cannotWrite);
    return {};
}

/// Writes the payload; removes the output where that fails.
Error writePayload(QFile &output, const char *payload, qint64 length)
{
    if (!output.open(QIODevice::WriteOnly))
        return refuse(unpacking, reason::cannotCreate);
    if (output.write(payload, length) != length || !output.flush()) {
        discard(output);
        return refuse(unpacking, reason::cannotWrite);
    }
    output.close();
    return {};
}

Error unpackMapped(QFile &input, const char *data, DataHelper::ZEL_FILE_TYPE &type,
                   const QString &outDir, QString &outFile)
{
    type = container::parseType(data);
    if (type == container::Type::Unknown)
        return refuse(unpacking, QStringLiteral("Invalid magic"));
    const auto header = container::parseHeader(data, input.size());
    if (!header || input.size() < header->containerSize())
        return refuse(unpacking, tooSmall);

    const QString name = outFile.isEmpty() ? header->fileName() : outFile;
    const QString path = outDir + QLatin1Char('/') + name;
    // Truncating the mapped container would kill the process at the first access.
    if (name.isEmpty() || isSameFile(path, input.fileName()))
        return refuse(unpacking, reason::cannotCreate);
    QFile output(path);
    Error error = writePayload(output, data + header->payloadOffset(), header->payloadLength);
    if (error.hasError())
        return error;

    const auto [digestError, digest] = digestOf(path, unpacking);
    if (digestError.hasError())
        return digestError;
    if (digest != header->digest)
        return refuse(unpacking, QStringLiteral("SHA256sum check failed"));
    outFile = path;
    return {};
}

} // namespace

Error DataHelper::packFileToBinContainer(const QString &inFile, ZEL_FILE_TYPE type,
                                         const QString &outFile)
{
    QFile input(inFile);
    if (!input.open(QIODevice::ReadOnly))
        return refuse(packing, reason::cannotRead);
    QFile output(outFile);
    // Qt would take a name up to its first NUL.
    if (input.size() > container::maximumPayload || isSameFile(inFile, outFile) ||
        outFile.contains(QChar::Null) || !output.open(QIODevice::WriteOnly))
        return refuse(packing, reason::cannotCreate);
    Error error = writeContainer(input, type, output);
    if (error.hasError())
        discard(output);
    return error;
}

Error DataHelper::unpackFileFromBinContainer(const QString &inFile, ZEL_FILE_TYPE &type,
                                             const QString &outDir, QString &outFile)
{
    QFile input(inFile);
    if (!input.open(QIODevice::ReadOnly))
        return refuse(unpacking, reason::cannotRead);
    if (input.size() < container::minimumSize)
        return refuse(unpacking, tooSmall);
    const uchar *mapping = input.map(0, input.size());
    if (mapping == nullptr)
        return refuse(unpacking, reason::cannotRead);
    return unpackMapped(input, reinterpret_cast<const char *>(mapping), type, outDir, outFile);
}

} // namespace aux
