// SPDX-License-Identifier: MIT
#ifndef AUXCTL_NETWORK_H
#define AUXCTL_NETWORK_H

#include <QJsonObject>

namespace auxctl
{

/// The first wired and the first radio interface, and which of them is in use.
QJsonObject networkInUse();
#define AUXCTL_NETWORK_SHAPE                                                                       \
    "{active: text, interfaces: [{kind: text, interface: text, mac: text, addresses: [text]}]}"

} // namespace auxctl

#endif
