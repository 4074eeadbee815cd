// SPDX-License-Identifier: MIT
#include "command.h"
#include "location.h"

namespace auxctl
{

namespace
{

Result name(const Call &call)
{
    return plainText(aux::FsHelper::createUniqueFileName(locationFromName(call.argument(0))));
}

Result list(const Call &call)
{
    return textLines(checked(aux::FsHelper::createDirList(locationFromName(call.argument(0)))));
}

Result count(const Call &call)
{
    const int count =
        checked(aux::FsHelper::getNumberOfDirEntries(locationFromName(call.argument(0))));
    return {count, QString::number(count)};
}

const Registration nameRow{
    {"files name", "LOCATION", "path", "text", "Make up a unique file name", {}, name}};
const Registration listRow{{"files list",
                            "LOCATION",
                            "files",
                            "[text]",
                            "List the readable files of a location",
                            {},
                            list}};
const Registration countRow{{"files count",
                             "LOCATION",
                             "count",
                             "number",
                             "Count the readable files of a location",
                             {&watchOption},
                             count}};

} // namespace

} // namespace auxctl
