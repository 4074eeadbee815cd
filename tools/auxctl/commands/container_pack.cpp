// SPDX-License-Identifier: MIT
#include "commands.h"
#include "containerfile.h"
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
    const QString typeName = invocation.isSet("type") ? invocation.value("type") : "DDDF";
    const auto type = typeFromName(typeName);
    if (type == aux::container::Type::Unknown)
        return misused(QStringLiteral("unknown type \"%1\"").arg(typeName));
    const OutputPlace output(invocation, 1);
    if (output.error().hasError())
        return failed(output.error());
    const InputFile input(invocation.argument(0), invocation.value("name"));
    if (input.error().hasError())
        return failed(input.error());

    const Progress progress(input.path());
    aux::Error error = aux::DataHelper::packFileToBinContainer(input.path(), type, output.file());
    if (error.hasError())
        return failed(std::move(error));
    Record fields{{"path", output.file()}};
    return output.deliver(output.file(),
                          record(fields + ContainerFile(output.file()).description()));
}

} // namespace auxctl
