// SPDX-License-Identifier: MIT
#ifndef AUXCTL_NEAREST_H
#define AUXCTL_NEAREST_H

#include <QStringList>

namespace auxctl
{

/// The candidate with the fewest letters to insert, remove or replace (Levenshtein distance).
QString nearest(const QString &word, const QStringList &candidates);

} // namespace auxctl

#endif
