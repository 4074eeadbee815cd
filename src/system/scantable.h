// SPDX-License-Identifier: MIT
#ifndef AUX_SYSTEM_SCANTABLE_H
#define AUX_SYSTEM_SCANTABLE_H

#include "aux/systemhelper.h"

#include <optional>

// What the Wi-Fi daemon answers, as values. SystemHelper says which debug lines are written.

namespace aux
{

/// The grade of a level that no receiver has.
constexpr int implausibleQuality = 4;

/// Grades a signal level in dBm.
int wpaInfoLevelToQuality(int level);

/// Reads one line of a scan table; nothing where it has to be left out.
std::optional<SystemHelper::WifiInfo> wpaInfoFromScanResultString(const QString &line);

/// Reads a scan table with its header line: the best quality first, each name once.
QVector<SystemHelper::WifiInfo> networksFromScanTable(const QString &table);

/// Grades the signal level in the answer to a signal poll; 0 where there is none.
int qualityFromSignalPoll(const QString &answer);

} // namespace aux

#endif
