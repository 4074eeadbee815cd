// SPDX-License-Identifier: MIT
#include "containerfile.h"
#include "files.h"
#include "progress.h"
#include "streams.h"

#include <aux/datahelper.h>

#include <QFileInfo>

namespace auxctl
{

namespace
{

/// The name that the file gets. A stored one is somebody else's choice: it hides no file.
QString nameFor(const ContainerFile &container, const std::optional<QString> &chosen)
{
    const QString stored = container.header().fileName();
    if (!chosen && (stored.isEmpty() || stored.startsWith('.')))
        fail(QStringLiteral("the stored name \"%1\" is not used, choose one with --name")
                 .arg(stored));
    return chosen.value_or(stored);
}

Result unpack(const Call &call)
{
    const auto chosen = call.value(fileNameOption);
    const QString place = directoryOf(call.argument(1, QStringLiteral(".")));
    Input input(call.argument(0));
    const ContainerFile container(input.path());
    Output output(call, place == "-" ? place : place + '/' + nameFor(container, chosen),
                  Access::Common);
    auto type = aux::DataHelper::ZEL_FILE_TYPE::Unknown;
    const QFileInfo temporary(output.file().pathWithoutName());
    QString name = temporary.fileName();
    // It is copied, and what has been written is read again.
    const Progress progress(input.path(), 2 * container.header().payloadLength);
    checkOn(
        input.name(), "not unpacked",
        aux::DataHelper::unpackFileFromBinContainer(input.path(), type, temporary.path(), name));
    return output.commit(record({{"path", output.path()}, {"type", typeName(type)}}));
}

const Registration row{{"container unpack",
                        "CONTAINER [DIRECTORY]",
                        "unpacked",
                        "{path: text, type: text}",
                        "Unpack a container and check its digest",
                        {&fileNameOption, &forceOption},
                        unpack}};

} // namespace

} // namespace auxctl
