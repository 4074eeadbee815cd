// SPDX-License-Identifier: MIT
#include "command.h"
#include "fs/datadirectories.h"

#include <QDir>

#include <cerrno>
#include <cstring>

namespace auxctl
{

namespace
{

Result makeDirectories(const Call &)
{
    QStringList paths;
    for (const aux::DataDirectory &directory : aux::dataDirectories().mid(1)) { // not the invalid
        if (!QDir().mkpath(directory.path))
            fail(QStringLiteral("cannot make %1: %2").arg(directory.path, strerror(errno)));
        paths += directory.path;
    }
    return textLines(paths);
}

const Registration row{{"files init",
                        "",
                        "directories",
                        "[text]",
                        "Make the data directories, those that are missing",
                        {},
                        makeDirectories}};

} // namespace

} // namespace auxctl
