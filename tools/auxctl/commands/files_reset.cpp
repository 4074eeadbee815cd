// SPDX-License-Identifier: MIT
#include "command.h"

#include <aux/fshelper.h>

namespace auxctl
{

namespace
{

Result reset(const Call &)
{
    check(aux::FsHelper::removeEntireDataDir());
    return {true, {}};
}

const Registration row{{"files reset",
                        "",
                        "reset",
                        "bool",
                        "Remove all data directories and settings",
                        {},
                        reset,
                        "This removes all stored files and settings."}};

} // namespace

} // namespace auxctl
