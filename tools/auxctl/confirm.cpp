// SPDX-License-Identifier: MIT
#include "confirm.h"

#include <iostream>
#include <string>

#include <unistd.h>

namespace auxctl
{

Outcome confirm(const QString &warning)
{
    if (isatty(STDIN_FILENO) == 0 || isatty(STDERR_FILENO) == 0)
        return misused(warning + " Without a terminal to ask, say --yes.");
    std::cerr << warning.toStdString() << " Go on? [y/N] ";
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "y" || answer == "yes" ? Outcome() : misused("nothing was done");
}

} // namespace auxctl
