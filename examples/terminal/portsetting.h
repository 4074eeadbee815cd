// SPDX-License-Identifier: MIT
#ifndef TERMINAL_PORTSETTING_H
#define TERMINAL_PORTSETTING_H

#include <aux/configuration.h>

#include <functional>

/// Shows the user the terminal with another data port, and keeps it where the user agrees; else
/// everything is as it was. Returns whether it is kept.
bool changePort(aux::Configuration &configuration, unsigned int port,
                const std::function<bool()> &userAgrees);

#endif
