// SPDX-License-Identifier: MIT
#include "help.h"

namespace auxctl
{

namespace
{

Result completion(const Call &)
{
    return plainText(bashCompletion());
}

const Registration row{
    {"completion", "", "script", "text", "Print the completion script for bash", {}, completion}};

} // namespace

} // namespace auxctl
