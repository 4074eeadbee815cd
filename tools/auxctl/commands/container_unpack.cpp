// SPDX-License-Identifier: MIT
#include "containerfile.h"
#include "fs/fileidentity.h"
#include "progress.h"
#include "streams.h"

#include <aux/datahelper.h>

namespace auxctl
{

namespace
{

constexpr Switch forceOption{"force", "Overwrite an existing file"};

/// The file that unpacking would write; null where the container does not say.
QString expectedPath(const ContainerFile &container, const QString &directory, const QString &name)
{
    const QString fileName = name.isEmpty() ? container.header().fileName() : name;
    return fileName.isEmpty() ? QString() : directory + '/' + fileName;
}

Result unpack(const Call &call)
{
    QString path = call.value(fileNameOption).value_or(QString());
    const OutputPlace output(call, 1, QStringLiteral("."));
    const Input input(call.argument(0));
    ContainerFile container(input.path());
    const QString expected = expectedPath(container, output.directory(), path);
    if (!expected.isEmpty() && aux::isOccupied(expected)) {
        if (!call.has(forceOption))
            fail(QStringLiteral("%1 exists already, --force overwrites it").arg(expected));
        if (!container.hasDigest()) // the library would find out when the file is gone
            fail(QStringLiteral("%1 is damaged, %2 stays").arg(input.path(), expected));
    }

    const Progress progress(expected);
    auto type = aux::DataHelper::ZEL_FILE_TYPE::Unknown;
    check(
        aux::DataHelper::unpackFileFromBinContainer(input.path(), type, output.directory(), path));
    return output.deliver(path, record({{"path", path}, {"type", typeName(type)}}));
}

const Registration row{{"container unpack",
                        "CONTAINER [DIRECTORY]",
                        "unpacked",
                        "{path, type}",
                        "Unpack a container and check its digest",
                        {&fileNameOption, &forceOption},
                        unpack}};

} // namespace

} // namespace auxctl
