// SPDX-License-Identifier: MIT
#include "confirm.h"

#include "failure.h"

#include <iostream>
#include <string>

#include <unistd.h>

namespace auxctl
{

void confirm(const char *warning)
{
    if (isatty(STDIN_FILENO) == 0 || isatty(STDERR_FILENO) == 0)
        misuse(QStringLiteral("%1 Without a terminal to ask, say --yes.").arg(warning));
    std::cerr << warning << " Go on? [y/N] ";
    std::string answer;
    std::getline(std::cin, answer);
    if (answer != "y" && answer != "yes")
        misuse("nothing was done");
}

} // namespace auxctl
