// SPDX-License-Identifier: MIT
#include "nearest.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace auxctl
{

namespace
{

int distance(const QString &a, const QString &b)
{
    const auto columns = static_cast<std::size_t>(b.size());
    std::vector<int> row(columns + 1);
    std::iota(row.begin(), row.end(), 0);
    for (const QChar letter : a) {
        int diagonal = row[0]++;
        for (std::size_t column = 1; column <= columns; ++column) {
            const int replaced = diagonal + (letter == b[static_cast<int>(column) - 1] ? 0 : 1);
            diagonal = row[column];
            row[column] = std::min({row[column] + 1, row[column - 1] + 1, replaced});
        }
    }
    return row.back();
}

} // namespace

QString nearest(const QString &word, const QStringList &candidates)
{
    const auto best = std::min_element(candidates.begin(), candidates.end(),
                                       [&word](const QString &a, const QString &b) {
                                           return distance(word, a) < distance(word, b);
                                       });
    return best == candidates.end() ? QString() : *best;
}

Outcome unknown(const char *kind, const QString &word, const QStringList &candidates)
{
    return misused(QStringLiteral("unknown %1 \"%2\", did you mean \"%3\"?")
                       .arg(kind, word, nearest(word, candidates)));
}

} // namespace auxctl
