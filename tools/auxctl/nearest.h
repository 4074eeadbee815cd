// SPDX-License-Identifier: MIT
#ifndef AUXCTL_NEAREST_H
#define AUXCTL_NEAREST_H

#include "outcome.h"

#include <QStringList>

namespace auxctl
{

/// The candidate with the fewest letters to insert, remove or replace (Levenshtein distance).
QString nearest(const QString &word, const QStringList &candidates);

/// The answer to a word that is none of the candidates; `kind` is what it should have named.
Outcome unknown(const char *kind, const QString &word, const QStringList &candidates);

} // namespace auxctl

#endif
