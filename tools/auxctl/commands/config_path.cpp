// SPDX-License-Identifier: MIT
#include "settings.h"

#include <QDateTime>
#include <QFileInfo>

namespace auxctl
{

namespace
{

Result describe(const Call &call)
{
    aux::Configuration configuration;
    open(configuration, call);
    const QFileInfo file(configuration.getFileName());
    return record(
        {{"path", file.filePath()},
         {"version", configuration.getVersion()},
         {"commits", configuration.getChangeCounter()},
         {"written", file.exists() ? file.lastModified().toUTC().toString(Qt::ISODate) : ""}});
}

const Registration row{{"config path",
                        "",
                        "configuration",
                        "{path: text, version: text, commits: number, written: text}",
                        "Show the settings file, its version, commits and last write",
                        {&applicationOption},
                        describe}};

} // namespace

} // namespace auxctl
