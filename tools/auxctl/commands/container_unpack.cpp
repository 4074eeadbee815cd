// SPDX-License-Identifier: MIT
#include "commands.h"
#include "containerfile.h"
#include "fs/fileidentity.h"
#include "progress.h"
#include "streams.h"

#include <aux/datahelper.h>

namespace auxctl
{

namespace
{

/// The file that unpacking would write; null where the container does not say.
QString expectedPath(const ContainerFile &container, const QString &directory, const QString &name)
{
    const QString fileName = name.isEmpty() ? container.header().fileName() : name;
    return fileName.isEmpty() ? QString() : directory + '/' + fileName;
}

Outcome unpack(const QString &input, const OutputPlace &output, const Invocation &invocation)
{
    QString path = invocation.value("name");
    ContainerFile container(input);
    const QString expected = expectedPath(container, output.directory(), path);
    if (!expected.isEmpty() && aux::isOccupied(expected)) {
        if (!invocation.isSet("force"))
            return failed(QStringLiteral("%1 exists already, --force overwrites it").arg(expected));
        if (!container.hasDigest()) // the library would find out when the file is gone
            return failed(QStringLiteral("%1 is damaged, %2 stays").arg(input, expected));
    }

    const Progress progress(expected);
    auto type = aux::DataHelper::ZEL_FILE_TYPE::Unknown;
    aux::Error error =
        aux::DataHelper::unpackFileFromBinContainer(input, type, output.directory(), path);
    if (error.hasError())
        return failed(std::move(error));
    return output.deliver(path, record({{"path", path}, {"type", typeName(type)}}));
}

} // namespace

Outcome containerUnpack(const Invocation &invocation)
{
    aux::Error wrongName = checkNameOption(invocation);
    if (wrongName.hasError())
        return failed(std::move(wrongName));
    const OutputPlace output(invocation, 1, QStringLiteral("."));
    if (output.error().hasError())
        return failed(output.error());
    return withInput(invocation.argument(0),
                     [&](const QString &path) { return unpack(path, output, invocation); });
}

} // namespace auxctl
