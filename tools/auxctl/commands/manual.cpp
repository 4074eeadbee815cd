// SPDX-License-Identifier: MIT
#include "help.h"

namespace auxctl
{

namespace
{

Result manual(const Call &)
{
    return document(manualPage());
}

const Registration row{{"manual", "", "manual", "text", "Print the manual page", {}, manual}};

} // namespace

} // namespace auxctl
