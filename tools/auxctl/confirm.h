// SPDX-License-Identifier: MIT
#ifndef AUXCTL_CONFIRM_H
#define AUXCTL_CONFIRM_H

namespace auxctl
{

/// Asks on the terminal whether to go on; a misuse where there is no terminal to ask, or no yes.
void confirm(const char *warning);

} // namespace auxctl

#endif
