// SPDX-License-Identifier: MIT
#ifndef AUXCTL_CHANGES_H
#define AUXCTL_CHANGES_H

#include "config/candidate.h"
#include "config/settingschanges.h"
#include "settings.h"

namespace auxctl
{

/// Writes all changes at once, or fails with nothing written.
void commit(const aux::SettingsChanges &changes, const aux::Configuration &configuration);

/// What a candidate says; fails where there is none, or it is no JSON object.
aux::Candidate candidateOf(const QString &path);

/// What the candidate would change in the settings file that is open, a record each.
Result differences(const aux::Candidate &candidate);
constexpr const char *differencesShape = "[{key: text, secret?: bool, old?: scalar, new?: scalar}]";

} // namespace auxctl

#endif
