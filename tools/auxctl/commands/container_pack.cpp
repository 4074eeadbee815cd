// SPDX-License-Identifier: MIT
#include "containerfile.h"
#include "streams.h"

#include <aux/datahelper.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace auxctl
{

namespace
{

const QByteArray types = "What it holds: " + typeNames().join(", ").toUtf8() + "; else the first";
const ValueOption<aux::container::Type> typeOption{"type", "TYPE", types.constData(), typeFromName};

/// A link of this name to the file, in a directory of its own: the library stores the last
/// component of the path that it is given.
QString linkTo(const QString &path, const QString &name, const QTemporaryDir &directory)
{
    QString link = directory.filePath(name);
    if (!directory.isValid() || !QFile::link(QFileInfo(path).absoluteFilePath(), link))
        fail("cannot make a temporary directory: " + directory.errorString());
    return link;
}

Result pack(const Call &call)
{
    const auto type = call.value(typeOption).value_or(static_cast<aux::container::Type>(0));
    const auto name = call.value(fileNameOption);
    const Input input(call.argument(0));
    const QFileInfo file(input.path());
    if (file.isFile() && file.size() == 0)
        fail(QStringLiteral("%1 is empty, a container of it could not be unpacked")
                 .arg(input.name()));
    const QTemporaryDir directory;
    Output output(call, call.argument(1),
                  [path = directory.path()] { QDir(path).removeRecursively(); });
    const QString link = linkTo(
        input.path(), name.value_or(input.isStream() ? "stdin" : file.fileName()), directory);
    check(aux::DataHelper::packFileToBinContainer(link, type, output.temporaryPath()));
    const Record path{{"path", output.path()}};
    return output.commit(record(path + ContainerFile(output.temporaryPath()).description()));
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
