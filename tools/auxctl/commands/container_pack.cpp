// SPDX-License-Identifier: MIT
#include "container/container.h"
#include "containerfile.h"
#include "progress.h"
#include "streams.h"

#include <QFileInfo>

namespace auxctl
{

namespace
{

const QByteArray types = "What it holds: " + typeNames().join(", ").toUtf8() + "; else the first";
const ValueOption<aux::container::Type> typeOption{"type", "TYPE", types.constData(), typeFromName};

Result pack(const Call &call)
{
    const auto type = call.value(typeOption).value_or(static_cast<aux::container::Type>(0));
    Input input(call.argument(0));
    const QFileInfo file(input.path());
    if (file.isFile() && file.size() == 0)
        fail(QStringLiteral("%1 is empty, a container of it could not be unpacked")
                 .arg(input.name()));
    const QString name =
        call.value(fileNameOption).value_or(input.isStream() ? "stdin" : file.fileName());
    Output output(call, call.argument(1), Access::Common);
    const QString container = output.file().pathWithoutName();
    const Progress progress(input.path(), file.size());
    check(aux::container::pack(input.path(), type, name, container));
    const Record path{{"path", output.path()}};
    return output.commit(record(path + ContainerFile(container).description()));
}

const Registration row{
    {"container pack",
     "FILE CONTAINER",
     "container",
     "{path: text, type: text, name: text, size: number, digest: text, complete: bool}",
     "Pack a file into a container",
     {&typeOption, &fileNameOption, &forceOption},
     pack}};

} // namespace

} // namespace auxctl
