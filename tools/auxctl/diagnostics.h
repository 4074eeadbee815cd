// SPDX-License-Identifier: MIT
#ifndef AUXCTL_DIAGNOSTICS_H
#define AUXCTL_DIAGNOSTICS_H

#include <QStringList>

namespace auxctl
{

/// Keeps the library's diagnostic lines instead of printing them: the answer no of a check, and
/// some failures, have their reason only there.
void collectDiagnostics();

/// What was written since the last call.
QStringList takeDiagnostics();

} // namespace auxctl

#endif
