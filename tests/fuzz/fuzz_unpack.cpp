// SPDX-License-Identifier: MIT
// Unpacks whatever bytes it is given. Besides what the sanitizers see: success means that exactly
// one file was written, inside the output directory, with the digest that the container states.
#include <aux/datahelper.h>

#include "require.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using aux::DataHelper;

namespace
{

constexpr int digestOffset = 8;
constexpr int digestSize = 32;

void requireDigest(const QString &path, const QByteArray &container)
{
    QFile output(path);
    require(output.open(QIODevice::ReadOnly));
    require(QCryptographicHash::hash(output.readAll(), QCryptographicHash::Sha256) ==
            container.mid(digestOffset, digestSize));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    static const QTemporaryDir world;
    static const QString input = world.filePath(QStringLiteral("container"));
    static const QString outDir = world.filePath(QStringLiteral("out"));
    require(QDir().mkpath(outDir));
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    QFile container(input);
    require(container.open(QIODevice::WriteOnly) && container.write(bytes) == bytes.size() &&
            container.flush());

    auto type = DataHelper::ZEL_FILE_TYPE::Unknown;
    QString path;
    const aux::Error error = DataHelper::unpackFileFromBinContainer(input, type, outDir, path);
    const QStringList all =
        QDir(world.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    require(all == QStringList({QStringLiteral("container"), QStringLiteral("out")}));
    require(path.isEmpty() == error.hasError());
    if (!error.hasError())
        requireDigest(path, bytes);
    require(QDir(outDir).removeRecursively());
    return 0;
}
