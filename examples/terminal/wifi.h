// SPDX-License-Identifier: MIT
#ifndef TERMINAL_WIFI_H
#define TERMINAL_WIFI_H

#include <aux/systemhelper.h>

/// The networks in reach, the best first; starts the Wi-Fi daemon where it does not run.
///
/// The daemon scans on: the first list after its start may be empty.
std::pair<aux::Error, QVector<aux::SystemHelper::WifiInfo>> networksInReach();

#endif
