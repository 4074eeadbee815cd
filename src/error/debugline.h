// SPDX-License-Identifier: MIT
#ifndef AUX_ERROR_DEBUGLINE_H
#define AUX_ERROR_DEBUGLINE_H

#include <QDebug>

namespace aux
{

/// Writes one diagnostic line: the operation's bare name (or a whole text, alone), then the items,
/// separated by blanks.
template <typename... Items>
void debugLine(const char *operation, const Items &...items)
{
    QDebug line = qDebug() << operation;
    static_cast<void>((line << ... << items));
}

} // namespace aux

#endif
