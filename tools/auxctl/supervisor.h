// SPDX-License-Identifier: MIT
#ifndef AUXCTL_SUPERVISOR_H
#define AUXCTL_SUPERVISOR_H

#include <functional>

namespace auxctl
{

/// From here on a process of its own does the work, and this one waits for it and ends like it.
///
/// Where a signal ends either of them (Ctrl-C, TERM, HUP, QUIT, a closed pipe), the other follows,
/// and only then this one cleans up: what a signal handler could not do, it does in peace.
void supervise(const std::function<void()> &cleanUp);

} // namespace auxctl

#endif
