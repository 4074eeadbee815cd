// SPDX-License-Identifier: MIT
// Does one of the hot paths as often as it is told, for nothing but the counting of instructions:
// hotpaths crc32 TIMES BYTES, or hotpaths checksum|pack|unpack TIMES BYTES DIRECTORY.
// Before that it prepares everything, so that two runs differ by the repetitions alone.
#include <aux/crc32.h>
#include <aux/datahelper.h>
#include <aux/fshelper.h>

#include <QFile>

#include <functional>
#include <vector>

using aux::DataHelper;

namespace
{

void check(bool good, const char *what)
{
    if (!good)
        qFatal("%s failed", what);
}

std::function<void()> crc32Of(int bytes)
{
    return [data = std::vector<unsigned char>(static_cast<std::size_t>(bytes), 'x'),
            crc = 0U]() mutable {
        crc = aux::crc32(crc, data.data(), static_cast<unsigned int>(data.size()));
    };
}

void pack(const QString &source, const QString &container)
{
    check(!DataHelper::packFileToBinContainer(source, DataHelper::ZEL_FILE_TYPE::DDDF, container)
               .hasError(),
          "packing");
}

void unpack(const QString &container, const QString &directory)
{
    DataHelper::ZEL_FILE_TYPE type{};
    QString name = QStringLiteral("unpacked");
    check(!DataHelper::unpackFileFromBinContainer(container, type, directory, name).hasError(),
          "unpacking");
}

std::function<void()> fileOperation(const QString &what, int bytes, const QString &directory)
{
    const QString source = directory + QStringLiteral("/source");
    const QString container = directory + QStringLiteral("/container");
    QFile file(source);
    check(file.open(QIODevice::WriteOnly) && file.write(QByteArray(bytes, 'x')) == bytes &&
              file.flush(),
          "writing");
    pack(source, container);
    if (what == QLatin1String("checksum"))
        return [=] { check(!aux::FsHelper::generateChecksum(source).first.hasError(), "reading"); };
    if (what == QLatin1String("pack"))
        return [=] { pack(source, container); };
    check(what == QLatin1String("unpack"), "finding this path");
    return [=] { unpack(container, directory); };
}

} // namespace

int main(int argc, char **argv)
{
    const QStringList arguments = [&] {
        QStringList list;
        for (int i = 1; i < argc; ++i)
            list += QString::fromLocal8Bit(argv[i]);
        return list;
    }();
    const QString what = arguments.value(0);
    const int bytes = arguments.value(2).toInt();
    const auto operation = what == QLatin1String("crc32")
                               ? crc32Of(bytes)
                               : fileOperation(what, bytes, arguments.value(3));
    for (int times = arguments.value(1).toInt(); times > 0; --times)
        operation();
}
