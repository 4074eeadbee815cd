// SPDX-License-Identifier: MIT
#include "help.h"

namespace auxctl
{

namespace
{

Result help(const Call &call)
{
    const QStringList words = call.arguments();
    const Command *command = findCommand(words);
    if (command == nullptr && !isFamily(words))
        misuseUnknownCommand(words);
    return document(command != nullptr ? helpFor(*command) : overview(words));
}

const Registration row{
    {"help", "[COMMAND...]", "help", "text", "Print help, also of one command", {}, help}};

} // namespace

} // namespace auxctl
