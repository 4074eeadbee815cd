// SPDX-License-Identifier: MIT
#include "containerfile.h"
#include "progress.h"
#include "streams.h"

#include <aux/datahelper.h>

namespace auxctl
{

namespace
{

const QByteArray types = "What it holds: " + typeNames().join(", ").toUtf8() + "; else the first";
const ValueOption<aux::container::Type> typeOption{"type", "TYPE", types.constData(), typeFromName};

Result pack(const Call &call)
{
    const auto type = call.value(typeOption).value_or(static_cast<aux::container::Type>(0));
    const QString name = call.value(fileNameOption).value_or(QString());
    const OutputPlace output(call, 1);
    const Input input(call.argument(0), name);
    const Progress progress(input.path());
    check(aux::DataHelper::packFileToBinContainer(input.path(), type, output.file()));
    const Record path{{"path", output.file()}};
    return output.deliver(output.file(), record(path + ContainerFile(output.file()).description()));
}

const Registration row{{"container pack",
                        "FILE CONTAINER",
                        "container",
                        "{path, type, name, size, digest, complete}",
                        "Pack a file into a container, which is overwritten",
                        {&typeOption, &fileNameOption},
                        pack}};

} // namespace

} // namespace auxctl
