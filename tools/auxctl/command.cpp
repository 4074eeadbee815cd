// SPDX-License-Identifier: MIT
#include "command.h"

#include <climits>

namespace auxctl
{

namespace
{

QStringList words(const char *arguments)
{
    return QString(arguments).split(' ', Qt::SkipEmptyParts);
}

} // namespace

int Command::minimumArguments() const
{
    int count = 0;
    for (const QString &word : words(arguments))
        count += word.startsWith('[') ? 0 : 1;
    return count;
}

int Command::maximumArguments() const
{
    return QString(arguments).contains("...") ? INT_MAX : words(arguments).size();
}

} // namespace auxctl
