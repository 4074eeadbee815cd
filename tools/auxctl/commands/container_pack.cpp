// SPDX-License-Identifier: MIT
#include "commands.h"
#include "containerfile.h"
#include "nearest.h"
#include "progress.h"
#include "streams.h"

#include <aux/datahelper.h>

namespace auxctl
{

Outcome containerPack(const Invocation &invocation)
{
    aux::Error wrongName = checkNameOption(invocation);
    if (wrongName.hasError())
        return failed(std::move(wrongName));
    const QString typeName = invocation.isSet("type") ? invocation.value("type") : typeNames().first();
    const auto type = typeFromName(typeName);
    if (type == aux::container::Type::Unknown)
        return unknown("type", typeName, typeNames());
    const OutputPlace output(invocation, 1);
    if (output.error().hasError())
        return failed(output.error());
    const auto pack = [&](const QString &path) {
        const Progress progress(path);
        aux::Error error = aux::DataHelper::packFileToBinContainer(path, type, output.file());
        if (error.hasError())
            return failed(std::move(error));
        const Record fields{{"path", output.file()}};
        return output.deliver(output.file(),
                              record(fields + ContainerFile(output.file()).description()));
    };
    return withInput(invocation.argument(0), pack, invocation.value("name"));
}

} // namespace auxctl
