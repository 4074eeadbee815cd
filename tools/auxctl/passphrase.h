// SPDX-License-Identifier: MIT
#ifndef AUXCTL_PASSPHRASE_H
#define AUXCTL_PASSPHRASE_H

#include "command.h"

#include <functional>

namespace auxctl
{

/// Where a command gets its pass phrase from; without any of them it asks.
const std::vector<Option> &passPhraseOptions();

enum class PassPhraseKind {
    Known,
    New, ///< asked for twice: nothing shows a slip of the fingers later
};

/// Runs the function with the pass phrase that the options name, or that a person types without an
/// echo. One line feed at the end of a file is not part of it.
Outcome withPassPhrase(const Invocation &invocation, PassPhraseKind kind,
                       const std::function<Outcome(const QString &)> &function);

} // namespace auxctl

#endif
