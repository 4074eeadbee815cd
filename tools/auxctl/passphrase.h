// SPDX-License-Identifier: MIT
#ifndef AUXCTL_PASSPHRASE_H
#define AUXCTL_PASSPHRASE_H

#include "command.h"

namespace auxctl
{

/// @{
/// Where a command gets its pass phrase from; without any of them it asks.
extern const ValueOption<QString> passPhraseFileOption;
extern const ValueOption<int> passPhraseDescriptorOption;
/// @}

enum class PassPhraseKind {
    Known,
    New, ///< asked for twice: nothing shows a slip of the fingers later
};

/// The pass phrase that the options name, or that a person types without an echo. One line feed at
/// the end of a file is not part of it.
QString passPhrase(const Call &call, PassPhraseKind kind);

} // namespace auxctl

#endif
